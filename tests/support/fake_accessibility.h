#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/rect.h"
#include "platform/accessibility.h"
#include "support/log.h"

namespace vellora {

// An element that answers from a table. Attributes without an entry answer nothing. With a log it
// notes each query as "name AXRole".
class FakeElement final : public AccessibilityElement {
 public:
  explicit FakeElement(std::string name = {}, Log* log = nullptr)
      : name_(std::move(name)), log_(log) {}

  AttributeValue attribute(std::string_view name) override {
    if (log_ != nullptr) log_->push_back(name_ + " " + std::string(name));
    if (onQuery) onQuery(name);
    if (answer) return answer(name);
    const auto found = values.find(name);
    return found == values.end() ? AttributeValue() : found->second;
  }

  FakeElement& set(std::string_view name, AttributeValue value) {
    values.insert_or_assign(std::string(name), std::move(value));
    return *this;
  }
  FakeElement& role(std::string text) { return set(AccessibilityAttribute::role, text); }
  FakeElement& title(std::string text) { return set(AccessibilityAttribute::title, text); }
  FakeElement& description(std::string text) {
    return set(AccessibilityAttribute::description, text);
  }
  FakeElement& identifier(std::string text) {
    return set(AccessibilityAttribute::identifier, text);
  }
  FakeElement& frame(const Rect& rect) {
    set(AccessibilityAttribute::position, Point{rect.x, rect.y});
    return set(AccessibilityAttribute::size, Size{rect.width, rect.height});
  }
  FakeElement& children(AccessibilityElements list) {
    return set(AccessibilityAttribute::children, std::move(list));
  }
  FakeElement& windows(AccessibilityElements list) {
    return set(AccessibilityAttribute::windows, std::move(list));
  }

  std::map<std::string, AttributeValue, std::less<>> values;
  // Called at each query before it is answered; moves a fake clock, for instance.
  std::function<void(std::string_view name)> onQuery;
  // In place of the table: for elements whose children are made at each query.
  std::function<AttributeValue(std::string_view name)> answer;

 private:
  std::string name_;
  Log* log_;
};

inline std::shared_ptr<FakeElement> fakeElement(std::string name = {}, Log* log = nullptr) {
  return std::make_shared<FakeElement>(std::move(name), log);
}

// Processes by identifier; one that is not entered answers nothing, nor does any without trust. A
// reading on another thread writes the log and `lastMessagingTimeout`: look at them when it has
// ended.
class FakeAccessibility final : public Accessibility {
 public:
  explicit FakeAccessibility(Log* log = nullptr) : log_(log) {}

  bool isTrusted() override { return trusted; }

  void requestTrust() override {
    if (log_ != nullptr) log_->push_back("requestTrust");
    if (onRequestTrust) onRequestTrust();
  }

  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                           const Player&,
                                                           const ReadingLimits& limits) override {
    if (log_ != nullptr) log_->push_back("applicationElement " + std::to_string(processIdentifier));
    lastMessagingTimeout = limits.messagingTimeout;
    const auto found = applications.find(processIdentifier);
    return !trusted || found == applications.end() ? fakeElement() : found->second;
  }

  bool trusted = true;
  std::function<void()> onRequestTrust;
  std::map<std::int32_t, std::shared_ptr<AccessibilityElement>> applications;
  float lastMessagingTimeout = 0;

 private:
  Log* log_;
};

}  // namespace vellora
