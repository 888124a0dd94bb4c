#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// The questions that objects are asked, and what their answers leave in the store. Each `ask` does
// nothing but line up its calls; `BusConnection::exchange` carries them out. An answer of the wrong
// type is no answer. Interfaces: org.a11y.atspi.Accessible and org.a11y.atspi.Component.
class AccessibleQueries {
 public:
  // Of a list of children the first `mostChildren` are asked for: no walk visits more.
  AccessibleQueries(BusConnection& bus, AccessibleStore& store, std::size_t mostChildren)
      : bus_(bus), store_(store), mostChildren_(mostChildren) {}

  // The program whose objects answer Properties.GetAll. That is a quarter of the messages, but
  // programs of some toolkits take it for a Get without a name, and fall over it: those are asked
  // one by one.
  void setProgramThatAnswersAll(std::string busName) { answersAll_ = std::move(busName); }

  void askRole(NodeIndex node);
  void askProperties(NodeIndex node);
  // No message where the count of children, if known, is 0. A longer list is cut.
  void askChildren(NodeIndex node);
  void askStates(NodeIndex node);
  void askExtents(NodeIndex node);

 private:
  BusMessagePtr call(NodeIndex node, const char* interface, const char* member);
  void askOneByOne(NodeIndex node);
  void askWholeList(NodeIndex node);
  void askListByIndex(NodeIndex node);

  BusConnection& bus_;
  AccessibleStore& store_;
  std::size_t mostChildren_;
  std::string answersAll_;
};

}  // namespace vellora
