#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

#include "platform/linux/accessibility/accessible_store.h"

namespace vellora {

// What patterns ask of org.a11y.atspi.Accessible's attributes.
struct ElementAttributes {
  std::string classes;  // "class", between blanks
  std::string id;       // "id"
};

// Readers of replies; as in accessible_replies.h each gives nothing for null and for another
// signature.

std::optional<ElementAttributes> readAttributes(sd_bus_message* reply);  // a{ss}

// a{ss}: a document's "URI" (Chromium) or "DocURL" (Firefox); empty where it has neither.
std::optional<std::string> readAddress(sd_bus_message* reply);

// v of (so): nothing for the null reference, too.
std::optional<AccessibleReference> readReferenceProperty(sd_bus_message* reply);

}  // namespace vellora
