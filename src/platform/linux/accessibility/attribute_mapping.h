#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vellora {

// Where each attribute that the reader asks comes from. The D-Bus interfaces are those of
// at-spi2-core; docs/accessibility-mapping.md says more.
enum class AttributeSource {
  windows,      // Accessible.GetChildren of the program's root, the active window first
  iconified,    // Accessible.GetState, bit ICONIFIED; windows only
  role,         // Accessible.GetRole, as `roleText` names it
  description,  // Accessible, property Description
  name,         // Accessible, property Name
  identifier,   // Accessible, property AccessibleId
  children,     // Accessible.GetChildren
  position,     // Component.GetExtents in screen coordinates, x and y
  size,         // the same, width and height
};

// Nothing for a name that is no attribute of the reader's.
std::optional<AttributeSource> attributeSource(std::string_view name);

// The reader's name for a role number of AT-SPI; `AccessibilityRole::unknown` for those that it has
// no name for.
std::string_view roleText(std::uint32_t role);

// Numbers of AT-SPI's AtspiRole and AtspiStateType.
namespace AtspiRole {
inline constexpr std::uint32_t dialog = 16;
inline constexpr std::uint32_t documentFrame = 82;
inline constexpr std::uint32_t documentWeb = 95;
inline constexpr std::uint32_t frame = 23;
inline constexpr std::uint32_t label = 29;
inline constexpr std::uint32_t pushButton = 43;
inline constexpr std::uint32_t scrollPane = 49;
inline constexpr std::uint32_t table = 55;
inline constexpr std::uint32_t tree = 65;
inline constexpr std::uint32_t treeTable = 66;
inline constexpr std::uint32_t unknown = 67;
inline constexpr std::uint32_t window = 69;
inline constexpr std::uint32_t listBox = 98;
}  // namespace AtspiRole
namespace AtspiState {
inline constexpr unsigned active = 1;
inline constexpr unsigned iconified = 15;
inline constexpr unsigned showing = 25;
}  // namespace AtspiState

}  // namespace vellora
