#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/rect.h"
#include "platform/accessibility_names.h"
#include "platform/player.h"
#include "platform/reading_limits.h"

namespace vellora {

class AccessibilityElement;
using AccessibilityElements = std::vector<std::shared_ptr<AccessibilityElement>>;

// What a query yields: nothing (it failed, timed out, has no value or one of another kind), or a
// text in UTF-8, a flag, a point or a size in accessibility coordinates (points, origin at the top
// left of the primary screen, y downward), or a list of elements.
using AttributeValue =
    std::variant<std::monostate, std::string, bool, Point, Size, AccessibilityElements>;

// One element of another program's window, as its accessibility interface shows it. An element and
// everything reached from it are used on one thread at a time, which need not be the main one. An
// element whose object is gone answers nothing.
class AccessibilityElement {
 public:
  virtual ~AccessibilityElement() = default;

  virtual AttributeValue attribute(std::string_view name) = 0;
};

// The system's accessibility service.
class Accessibility {
 public:
  virtual ~Accessibility() = default;

  // Whether this program may read other programs' windows. Main thread; returns at once.
  virtual bool isTrusted() = 0;

  // Has the system ask the user, who may be asked again at each call; does not wait for the answer.
  // Main thread.
  virtual void requestTrust() = 0;

  // The root element of a process, whose "AXWindows" lists its windows, front first. Its queries
  // wait `limits.messagingTimeout` at most; the other limits and `player` tell a backend that asks
  // ahead how far the reading will go and what it will look for. Never null; a process that is not
  // there answers nothing, and without trust none does. Any one thread at a time; the Accessibility
  // object must outlive the call only.
  virtual std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                                   const Player& player,
                                                                   const ReadingLimits& limits) = 0;
};

}  // namespace vellora
