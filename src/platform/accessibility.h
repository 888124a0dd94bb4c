#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/rect.h"

namespace vellora {

// The attribute names that an element answers.
namespace AccessibilityAttribute {
inline constexpr std::string_view windows = "AXWindows";
inline constexpr std::string_view minimized = "AXMinimized";
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view description = "AXDescription";
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view identifier = "AXIdentifier";
inline constexpr std::string_view children = "AXChildren";
inline constexpr std::string_view position = "AXPosition";
inline constexpr std::string_view size = "AXSize";
}  // namespace AccessibilityAttribute

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

  // The root element of a process, whose "AXWindows" lists its windows, front first. Queries wait
  // `messagingTimeout` seconds at most. Never null; a process that is not there answers nothing,
  // and without trust none does. Any one thread at a time; the Accessibility object must outlive
  // the call only.
  virtual std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                                   float messagingTimeout) = 0;
};

}  // namespace vellora
