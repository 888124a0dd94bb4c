#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vellora {

// The integer setting of that name in the value of a _XSETTINGS_SETTINGS property; nothing when it
// is not there, not an integer, or the value is cut short. XSETTINGS specification 0.5, "Format of
// the property".
std::optional<std::int32_t> integerSetting(std::string_view property, std::string_view name);

}  // namespace vellora
