#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellora {

// The number of AtspiRole that goes by this name, as Accessible.GetRoleName and accessibility
// inspectors spell it; nothing for other texts. Any thread, as all here.
std::optional<std::uint32_t> roleNumber(std::string_view name);

// "role 999" for a number without a name.
std::string roleName(std::uint32_t number);

// The name of a role that a person may have meant: what AT-SPI calls a role of ARIA or an element
// of HTML, or else the name that is nearest; empty when none is near.
std::string_view likelyRoleName(std::string_view word);

}  // namespace vellora
