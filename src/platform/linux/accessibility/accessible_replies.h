#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

#include "platform/linux/accessibility/accessible_store.h"

namespace vellora {

// Readers of replies. Each takes the reply or null, and gives nothing for null and for a reply
// whose signature is not the one named.

std::optional<std::uint32_t> readNumber(sd_bus_message* reply);       // u
std::optional<std::string> readText(sd_bus_message* reply);           // s
std::optional<std::uint64_t> readStates(sd_bus_message* reply);       // au: low half, high half
std::optional<AccessibleExtents> readExtents(sd_bus_message* reply);  // (iiii)
std::optional<std::string> readTextProperty(sd_bus_message* reply);   // v of s
// iiii: nothing, too, for an empty box, as Chromium gives it until it has measured the text.
std::optional<AccessibleExtents> readRangeExtents(sd_bus_message* reply);
std::optional<std::int32_t> readCountProperty(sd_bus_message* reply);  // v of i

// a{sv}; entries of other names or types are passed over.
std::optional<AccessibleProperties> readAllProperties(sd_bus_message* reply);

// (so); nothing for the null reference that stands for "no object".
std::optional<AccessibleReference> readReference(sd_bus_message* reply);

// a(so), at most the first `most`; null references are left out.
std::optional<std::vector<AccessibleReference>> readReferences(sd_bus_message* reply,
                                                               std::size_t most);

}  // namespace vellora
