#include "platform/linux/accessibility/attribute_mapping.h"

#include <algorithm>
#include <array>

#include "platform/accessibility_names.h"

namespace vellora {

namespace {

struct AttributeRow {
  std::string_view name;
  AttributeSource source;
};

constexpr std::array attributeRows{
    AttributeRow{AccessibilityAttribute::windows, AttributeSource::windows},
    AttributeRow{AccessibilityAttribute::minimized, AttributeSource::iconified},
    AttributeRow{AccessibilityAttribute::role, AttributeSource::role},
    AttributeRow{AccessibilityAttribute::description, AttributeSource::description},
    AttributeRow{AccessibilityAttribute::title, AttributeSource::name},
    AttributeRow{AccessibilityAttribute::identifier, AttributeSource::identifier},
    AttributeRow{AccessibilityAttribute::children, AttributeSource::children},
    AttributeRow{AccessibilityAttribute::position, AttributeSource::position},
    AttributeRow{AccessibilityAttribute::size, AttributeSource::size},
};

struct RoleRow {
  std::uint32_t role;
  std::string_view text;
};

constexpr std::array roleRows{
    RoleRow{AtspiRole::dialog, AccessibilityRole::window},
    RoleRow{AtspiRole::frame, AccessibilityRole::window},
    RoleRow{AtspiRole::label, AccessibilityRole::staticText},
    RoleRow{AtspiRole::pushButton, AccessibilityRole::button},
    RoleRow{AtspiRole::scrollPane, AccessibilityRole::scrollArea},
    RoleRow{AtspiRole::window, AccessibilityRole::window},
};

}  // namespace

std::optional<AttributeSource> attributeSource(std::string_view name) {
  const auto row = std::ranges::find(attributeRows, name, &AttributeRow::name);
  if (row == attributeRows.end()) return std::nullopt;
  return row->source;
}

std::string_view roleText(std::uint32_t role) {
  const auto row = std::ranges::find(roleRows, role, &RoleRow::role);
  return row == roleRows.end() ? AccessibilityRole::unknown : row->text;
}

}  // namespace vellora
