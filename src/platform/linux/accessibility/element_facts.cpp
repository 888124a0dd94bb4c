#include "platform/linux/accessibility/element_facts.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"

namespace vellora {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

constexpr std::uint32_t screenCoordinates = 0;  // AtspiCoordType

// Of AtspiCollectionMatchType and AtspiCollectionSortOrder.
constexpr std::int32_t matchAll = 1;
constexpr std::int32_t matchAny = 2;
constexpr std::uint32_t treeOrder = 1;

// Of one list.
constexpr std::size_t mostListed = 3000;

// Questions between two runs of a search: enough that the program is not kept waiting, few enough
// that a search which has found what it looks for has not asked much for nothing.
constexpr std::size_t mostLinedUp = 128;

constexpr std::uint32_t bitsPerWord = 32;

}  // namespace

ElementIndex ElementFacts::intern(AccessibleReference reference) {
  const auto next = static_cast<ElementIndex>(elements_.size());
  const auto [entry, isNew] = indices_.try_emplace(reference, next);
  if (isNew) elements_.emplace_back().reference = std::move(reference);
  return entry->second;
}

bool ElementFacts::mayAsk() const {
  return linedUp_ < mostLinedUp && !bus_.isBroken() && Steady::now() < deadline_;
}

// The program is the bus's patient peer, so its silence means that the time was over; others are
// given up earlier, which is their answer.
bool ElementFacts::isCutShort(const std::string& peer) const {
  return bus_.isBroken() || Steady::now() >= deadline_ || (peer == program_ && bus_.isSilent(peer));
}

BusMessagePtr ElementFacts::call(ElementIndex element, const char* interface, const char* member) {
  const AccessibleReference& reference = elements_[element].reference;
  return bus_.newCall(reference.bus, reference.path, interface, member);
}

BusMessagePtr ElementFacts::callGet(ElementIndex element, const char* property,
                                    const char* interface) {
  BusMessagePtr question = call(element, properties, "Get");
  if (question) {
    sd_bus_message_append(question.get(), "ss", interface != nullptr ? interface : accessible,
                          property);
  }
  return question;
}

template <class Value, class Read>
void ElementFacts::ask(ElementIndex element, Answer<Value>& answer, BusMessagePtr call, Read read) {
  answer.begin();
  ++linedUp_;
  ++sent_;
  bus_.send(std::move(call), [this, element, &answer, read](sd_bus_message* reply) {
    if (reply == nullptr && isCutShort(elements_[element].reference.bus)) {
      answer = {};
    } else {
      answer.tell(read(reply));
    }
  });
}

template <class Value, class Read>
const Answer<Value>& ElementFacts::known(ElementIndex element, Answer<Value>& answer,
                                         const char* interface, const char* member, Read read) {
  if (answer.isUnasked() && mayAsk()) ask(element, answer, call(element, interface, member), read);
  return answer;
}

const Answer<std::uint32_t>& ElementFacts::role(ElementIndex element) {
  return known(element, elements_[element].role, accessible, "GetRole", readNumber);
}

const Answer<std::string>& ElementFacts::name(ElementIndex element) {
  Answer<std::string>& answer = elements_[element].name;
  if (answer.isUnasked() && mayAsk()) {
    ask(element, answer, callGet(element, "Name"), readTextProperty);
  }
  return answer;
}

const Answer<std::string>& ElementFacts::text(ElementIndex element) {
  Answer<std::string>& answer = elements_[element].text;
  if (answer.isUnasked() && mayAsk()) {
    BusMessagePtr question = call(element, textInterface, "GetText");
    if (question) sd_bus_message_append(question.get(), "ii", 0, -1);
    ask(element, answer, std::move(question), readText);
  }
  return answer;
}

const Answer<ElementAttributes>& ElementFacts::attributes(ElementIndex element) {
  return known(element, elements_[element].attributes, accessible, "GetAttributes", readAttributes);
}

const Answer<std::string>& ElementFacts::accessibleId(ElementIndex element) {
  Answer<std::string>& answer = elements_[element].accessibleId;
  if (answer.isUnasked() && mayAsk()) {
    ask(element, answer, callGet(element, "AccessibleId"), readTextProperty);
  }
  return answer;
}

const Answer<std::string>& ElementFacts::address(ElementIndex document) {
  return known(document, elements_[document].address, "org.a11y.atspi.Document", "GetAttributes",
               readAddress);
}

const Answer<ElementIndex>& ElementFacts::parent(ElementIndex element) {
  Answer<ElementIndex>& answer = elements_[element].parent;
  if (answer.isUnasked() && mayAsk()) {
    ask(element, answer, callGet(element, "Parent"), [this](sd_bus_message* reply) {
      auto reference = readReferenceProperty(reply);
      if (!reference) return std::optional<ElementIndex>();
      return std::optional(intern(std::move(*reference)));
    });
  }
  return answer;
}

std::optional<ElementList> ElementFacts::internAll(
    std::optional<std::vector<AccessibleReference>> list) {
  if (!list) return std::nullopt;
  ElementList elements;
  elements.reserve(list->size());
  for (AccessibleReference& reference : *list) elements.push_back(intern(std::move(reference)));
  return elements;
}

const Answer<ElementList>& ElementFacts::children(ElementIndex element) {
  return known(
      element, elements_[element].children, accessible, "GetChildren",
      [this](sd_bus_message* reply) { return internAll(readReferences(reply, mostListed)); });
}

const Answer<std::int32_t>& ElementFacts::childCount(ElementIndex element) {
  Answer<std::int32_t>& answer = elements_[element].childCount;
  if (answer.isUnasked() && mayAsk()) {
    moving_.push_back(element);
    ask(element, answer, callGet(element, "ChildCount"), readCountProperty);
  }
  return answer;
}

const Answer<ElementList>& ElementFacts::matches(ElementIndex top,
                                                 const std::vector<std::uint32_t>& roles) {
  Answer<ElementList>& answer = elements_[top].matches[roles];
  if (!answer.isUnasked() || !mayAsk()) return answer;
  std::array<std::uint32_t, 5> words{};
  for (const std::uint32_t role : roles) {
    if (role / bitsPerWord < words.size()) words[role / bitsPerWord] |= 1U << role % bitsPerWord;
  }
  BusMessagePtr question = call(top, "org.a11y.atspi.Collection", "GetMatches");
  if (question) {
    // The rule's parts: states, attributes, roles, interfaces, each with how it is meant; inverted.
    sd_bus_message_append(question.get(), "(aiia{ss}iaiiasib)uib", 2, 0, 0, matchAll, 0, matchAll,
                          5, words[0], words[1], words[2], words[3], words[4],
                          roles.empty() ? matchAll : matchAny, 0, matchAll, 0, treeOrder,
                          static_cast<std::int32_t>(mostListed), 1);
  }
  ask(top, answer, std::move(question),
      [this](sd_bus_message* reply) { return internAll(readReferences(reply, mostListed)); });
  return answer;
}

const Answer<std::uint64_t>& ElementFacts::states(ElementIndex element) {
  return known(element, elements_[element].states, accessible, "GetState", readStates);
}

const Answer<AccessibleExtents>& ElementFacts::extents(ElementIndex element) {
  Answer<AccessibleExtents>& answer = elements_[element].extents;
  if (answer.isUnasked() && mayAsk()) {
    BusMessagePtr question = call(element, "org.a11y.atspi.Component", "GetExtents");
    if (question) sd_bus_message_append(question.get(), "u", screenCoordinates);
    moving_.push_back(element);
    ask(element, answer, std::move(question), readExtents);
  }
  return answer;
}

const Answer<std::int32_t>& ElementFacts::characterCount(ElementIndex element) {
  Answer<std::int32_t>& answer = elements_[element].characterCount;
  if (answer.isUnasked() && mayAsk()) {
    ask(element, answer, callGet(element, "CharacterCount", textInterface), readCountProperty);
  }
  return answer;
}

const Answer<AccessibleExtents>& ElementFacts::textExtents(ElementIndex element,
                                                           std::int32_t count) {
  Answer<AccessibleExtents>& answer = elements_[element].textExtents;
  if (answer.isUnasked() && mayAsk()) {
    BusMessagePtr question = call(element, textInterface, "GetRangeExtents");
    if (question) sd_bus_message_append(question.get(), "iiu", 0, count, screenCoordinates);
    moving_.push_back(element);
    ask(element, answer, std::move(question), readRangeExtents);
  }
  return answer;
}

bool ElementFacts::exchange() {
  if (std::exchange(linedUp_, 0) == 0) return false;
  bus_.exchange(deadline_);
  return !isCutShort(program_);
}

void ElementFacts::forgetMoment(const ElementList& states) {
  for (const ElementIndex moving : std::exchange(moving_, {})) {
    ElementFact& element = elements_[moving];
    element.extents = {};
    element.textExtents = {};
    element.childCount = {};
  }
  for (const ElementIndex element : states) elements_[element].states = {};
}

void ElementFacts::forget(ElementIndex element) {
  ElementFact blank;
  blank.reference = std::move(elements_[element].reference);
  elements_[element] = std::move(blank);
}

void ElementFacts::forgetAll() {
  for (ElementIndex element = 0; element < elements_.size(); ++element) forget(element);
}

}  // namespace vellora
