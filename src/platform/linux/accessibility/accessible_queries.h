#pragma once

#include <cstddef>
#include <functional>
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

  // Asks again what the store knows, leaves that as it is, and tells what is another now; tells
  // nothing where there is no answer. Properties are asked of the program alone that answers all at
  // once, children where the list was not cut.
  enum class Difference { none, itself, children };
  using Comparison = std::function<void(Difference found)>;
  void compareRole(NodeIndex node, Comparison told);
  void compareProperties(NodeIndex node, Comparison told);
  void compareChildren(NodeIndex node, Comparison told);

 private:
  BusMessagePtr call(NodeIndex node, const char* interface, const char* member);
  BusMessagePtr callGetAll(NodeIndex node);
  void askOneByOne(NodeIndex node);
  void askWholeList(NodeIndex node);
  void askListByIndex(NodeIndex node);

  BusConnection& bus_;
  AccessibleStore& store_;
  std::size_t mostChildren_;
  std::string answersAll_;
};

}  // namespace vellora
