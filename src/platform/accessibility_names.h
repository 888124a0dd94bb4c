#pragma once

#include <string_view>

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

// Values of the role; there are others.
namespace AccessibilityRole {
inline constexpr std::string_view button = "AXButton";
inline constexpr std::string_view scrollArea = "AXScrollArea";
inline constexpr std::string_view staticText = "AXStaticText";
inline constexpr std::string_view unknown = "AXUnknown";
inline constexpr std::string_view window = "AXWindow";
}  // namespace AccessibilityRole

}  // namespace vellora
