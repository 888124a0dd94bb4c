#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/element_replies.h"

namespace vellora {

using ElementIndex = std::uint32_t;
using ElementList = std::vector<ElementIndex>;

// What is known of an element of a described player.
struct ElementFact {
  AccessibleReference reference;
  Answer<std::uint32_t> role;
  Answer<std::string> name;
  Answer<std::string> text;  // of org.a11y.atspi.Text
  bool wantedText = false;   // the name was not enough when it was forgotten
  Answer<ElementAttributes> attributes;
  Answer<std::string> accessibleId;
  Answer<std::string> address;  // of org.a11y.atspi.Document
  Answer<ElementIndex> parent;
  Answer<ElementList> children;
  Answer<std::int32_t> childCount;
  std::map<std::vector<std::uint32_t>, Answer<ElementList>> matches;  // by roles
  Answer<std::uint64_t> states;
  Answer<AccessibleExtents> extents;
  Answer<std::int32_t> characterCount;
  Answer<AccessibleExtents> textExtents;
};

// The elements of one program, and the questions to them. Each getter gives what is known; what was
// not asked yet it lines up, and `exchange` has it answered. So a search is written as a function
// of what is known, that is run again after each exchange until it asks nothing more; what one
// reading has no time for, the next one goes on with. A question that was cut short by the end of
// the time counts as not asked; one that was refused is told without a value. One thread at a time.
class ElementFacts {
 public:
  ElementFacts(BusConnection& bus, std::string program) : bus_(bus), program_(std::move(program)) {}
  ElementFacts(const ElementFacts&) = delete;
  ElementFacts& operator=(const ElementFacts&) = delete;

  ElementIndex intern(AccessibleReference reference);
  const std::string& program() const { return program_; }  // its name on the bus
  std::size_t size() const { return elements_.size(); }
  ElementFact& operator[](ElementIndex element) { return elements_[element]; }
  const ElementFact& operator[](ElementIndex element) const { return elements_[element]; }

  const Answer<std::uint32_t>& role(ElementIndex element);
  const Answer<std::string>& name(ElementIndex element);
  const Answer<std::string>& text(ElementIndex element);
  const Answer<ElementAttributes>& attributes(ElementIndex element);
  const Answer<std::string>& accessibleId(ElementIndex element);
  const Answer<std::string>& address(ElementIndex document);
  const Answer<ElementIndex>& parent(ElementIndex element);
  const Answer<ElementList>& children(ElementIndex element);
  const Answer<std::int32_t>& childCount(ElementIndex element);
  // The elements below of one of the roles, of any without roles, in the tree's order
  // (org.a11y.atspi.Collection).
  const Answer<ElementList>& matches(ElementIndex top, const std::vector<std::uint32_t>& roles);
  const Answer<std::uint64_t>& states(ElementIndex element);
  const Answer<AccessibleExtents>& extents(ElementIndex element);
  const Answer<std::int32_t>& characterCount(ElementIndex element);  // of org.a11y.atspi.Text
  // The box of the text's characters, so many: a text answers for no more than it has.
  const Answer<AccessibleExtents>& textExtents(ElementIndex element, std::int32_t count);

  // Until when what is asked from here on may take. After that nothing is.
  void setDeadline(Steady::time_point deadline) { deadline_ = deadline; }
  // Carries out what was lined up. True when the search may be run again: something was asked, and
  // the program has answered before the deadline.
  bool exchange();
  // Calls that were sent so far.
  std::size_t sent() const { return sent_; }

  // Forgets what changes at any moment: extents, and the states of these elements.
  void forgetMoment(const ElementList& states);
  // Forgets all facts of an element, or of every one. Indices stay what they are.
  void forget(ElementIndex element);
  void forgetAll();

 private:
  bool mayAsk() const;
  bool isCutShort(const std::string& peer) const;
  BusMessagePtr call(ElementIndex element, const char* interface, const char* member);
  BusMessagePtr callGet(ElementIndex element, const char* property,
                        const char* interface = nullptr);
  template <class Value, class Read>
  void ask(ElementIndex element, Answer<Value>& answer, BusMessagePtr call, Read read);
  template <class Value, class Read>
  const Answer<Value>& known(ElementIndex element, Answer<Value>& answer, const char* interface,
                             const char* member, Read read);
  std::optional<ElementList> internAll(std::optional<std::vector<AccessibleReference>> list);

  BusConnection& bus_;
  const std::string program_;
  std::deque<ElementFact> elements_;
  std::map<AccessibleReference, ElementIndex> indices_;
  ElementList moving_;  // those asked for what changes at any moment, since that was forgotten
  std::size_t linedUp_ = 0;
  std::size_t sent_ = 0;
  Steady::time_point deadline_;
};

}  // namespace vellora
