#include "platform/linux/accessibility/element_search.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

// In one walk or list.
constexpr std::size_t mostVisited = 3000;
constexpr int deepest = 100;
constexpr int deepestText = 8;

constexpr std::string_view objectCharacter = "\xEF\xBF\xBC";  // U+FFFC
constexpr std::string_view noBreakSpace = "\xC2\xA0";

class Walker {
 public:
  Walker(ElementFacts& facts, const std::function<WalkStep(ElementIndex)>& visit)
      : facts_(facts), visit_(visit) {}

  bool walk(ElementIndex top) {
    isVisited_.assign(facts_.size(), false);
    note(top);
    below(top, 0);
    return isComplete_;
  }

 private:
  // False for one that was met before.
  bool note(ElementIndex element) {
    if (element >= isVisited_.size()) isVisited_.resize(element + 1, false);
    if (isVisited_[element]) return false;
    isVisited_[element] = true;
    return true;
  }

  void below(ElementIndex element, int depth) {
    if (depth >= deepest) return;
    const Answer<ElementList>& children = facts_.children(element);
    if (!children.isTold()) isComplete_ = false;
    if (!children.value) return;
    for (const ElementIndex child : *children.value) {
      if (visited_ >= mostVisited || isStopped_) return;
      if (!note(child)) continue;
      ++visited_;
      switch (visit_(child)) {
        case WalkStep::into:
          below(child, depth + 1);
          break;
        case WalkStep::over:
          break;
        case WalkStep::stop:
          isStopped_ = true;
          return;
        case WalkStep::unknown:
          isComplete_ = false;
          break;
      }
    }
  }

  ElementFacts& facts_;
  const std::function<WalkStep(ElementIndex)>& visit_;
  std::vector<bool> isVisited_;
  std::size_t visited_ = 0;
  bool isComplete_ = true;
  bool isStopped_ = false;
};

std::string collapsed(std::string_view text) {
  std::string result;
  bool isBlank = false;
  for (std::size_t i = 0; i < text.size();) {
    const bool isWide = text.substr(i).starts_with(noBreakSpace);
    if (isWide || std::string_view(" \t\n\v\f\r").find(text[i]) != std::string_view::npos) {
      isBlank = true;
      i += isWide ? noBreakSpace.size() : 1;
      continue;
    }
    if (isBlank && !result.empty()) result += ' ';
    isBlank = false;
    result += text[i++];
  }
  return result;
}

std::optional<std::string> rawText(ElementFacts& facts, ElementIndex element, int depth);

// The texts of the children, each in the place of one U+FFFC where there are as many.
std::optional<std::string> textWithChildren(ElementFacts& facts, ElementIndex element,
                                            std::string_view text, int depth) {
  const Answer<ElementList>& children = facts.children(element);
  if (!children.isTold()) return std::nullopt;
  std::vector<std::string> parts;
  bool isComplete = true;
  const ElementList list = children.value.value_or(ElementList());
  for (const ElementIndex child : list) {
    const auto part = rawText(facts, child, depth + 1);
    if (part) parts.push_back(*part);
    isComplete = isComplete && part;
  }
  if (!isComplete) return std::nullopt;
  std::size_t places = 0;
  for (std::size_t at = 0; (at = text.find(objectCharacter, at)) != std::string_view::npos;
       at += objectCharacter.size()) {
    ++places;
  }
  std::string result;
  if (places != parts.size()) {
    for (const std::string& part : parts) result += part + " ";
    return result;
  }
  for (const std::string& part : parts) {
    const std::size_t at = text.find(objectCharacter);
    result += text.substr(0, at);
    result += part;
    text.remove_prefix(at + objectCharacter.size());
  }
  return result.append(text);
}

std::optional<std::string> rawText(ElementFacts& facts, ElementIndex element, int depth) {
  const Answer<std::string>& name = facts.name(element);
  if (!name.isTold()) return std::nullopt;
  if (name.value && !collapsed(*name.value).empty()) return name.value;
  const Answer<std::string>& own = facts.text(element);
  if (!own.isTold()) return std::nullopt;
  const std::string text = own.value.value_or(std::string());
  const bool hasObjects = text.find(objectCharacter) != std::string::npos;
  if (!hasObjects && !collapsed(text).empty()) return text;
  if (depth >= deepestText) return std::string();
  return textWithChildren(facts, element, text, depth);
}

}  // namespace

std::optional<bool> fits(ElementFacts& facts, const ElementPattern& pattern, ElementIndex element) {
  ElementTraits traits;
  bool isKnown = true;
  // What an element lacks for certain is not asked for again: the rest of it does not matter then.
  const auto take = [&isKnown](const auto& answer, auto& place) {
    if (!answer.isTold()) isKnown = false;
    if (answer.value) place = *answer.value;
  };
  if (!pattern.roles.empty()) {
    take(facts.role(element), traits.role);
    if (isKnown && std::ranges::count(pattern.roles, traits.role) == 0) return false;
  }
  if (!pattern.names.empty()) take(facts.name(element), traits.name);
  if (!pattern.classes.empty() || !pattern.ids.empty()) {
    ElementAttributes attributes;
    take(facts.attributes(element), attributes);
    traits.classes = attributes.classes;
    traits.id = attributes.id;
    const bool isAsked = facts[element].attributes.isTold();
    if (isAsked && !pattern.ids.empty() && traits.id.empty()) {
      take(facts.accessibleId(element), traits.id);
    }
  }
  if (!isKnown) return std::nullopt;
  return fits(pattern, traits);
}

bool walk(ElementFacts& facts, ElementIndex top,
          const std::function<WalkStep(ElementIndex element)>& visit) {
  return Walker(facts, visit).walk(top);
}

Sought findFirst(ElementFacts& facts, ElementIndex top, const std::vector<std::uint32_t>& roles,
                 const std::function<std::optional<bool>(ElementIndex element)>& isSought) {
  std::optional<ElementIndex> found;
  bool isComplete = true;
  const Answer<ElementList>& matches = facts.matches(top, roles);
  if (!matches.isTold()) return std::nullopt;
  if (matches.value) {
    for (const ElementIndex element : *matches.value) {
      const auto answer = element == top ? false : isSought(element);
      if (!answer) isComplete = false;
      if (!answer.value_or(false)) continue;
      found = element;
      break;
    }
  } else {
    isComplete = walk(facts, top,
                      [&](ElementIndex element) {
                        const auto answer = isSought(element);
                        if (answer.value_or(false)) {
                          found = element;
                          return WalkStep::stop;
                        }
                        if (!answer) isComplete = false;
                        return WalkStep::into;
                      }) &&
                 isComplete;
  }
  if (!isComplete) return std::nullopt;
  return Sought(found);
}

std::optional<ElementList> findAll(ElementFacts& facts, ElementIndex top,
                                   const std::vector<std::uint32_t>& roles) {
  const Answer<ElementList>& matches = facts.matches(top, roles);
  if (!matches.isTold()) return std::nullopt;
  if (matches.value) return matches.value;
  ElementList found;
  const bool isComplete = walk(facts, top, [&](ElementIndex element) {
    const Answer<std::uint32_t>& role = facts.role(element);
    if (!role.isTold()) return WalkStep::unknown;
    if (role.value && std::ranges::count(roles, *role.value) > 0) found.push_back(element);
    return WalkStep::into;
  });
  if (!isComplete) return std::nullopt;
  return found;
}

Sought climb(ElementFacts& facts, const ElementPattern& pattern, ElementIndex element,
             ElementIndex top) {
  for (int i = 0; i < deepest; ++i) {
    const auto answer = fits(facts, pattern, element);
    if (!answer) return std::nullopt;
    if (*answer) return Sought(element);
    if (element == top) break;
    const Answer<ElementIndex>& parent = facts.parent(element);
    if (!parent.isTold()) return std::nullopt;
    if (!parent.value) break;
    element = *parent.value;
  }
  return Sought(std::optional<ElementIndex>());
}

std::optional<std::string> textOf(ElementFacts& facts, ElementIndex element) {
  const auto text = rawText(facts, element, 0);
  if (!text) return std::nullopt;
  return collapsed(*text);
}

}  // namespace vellora
