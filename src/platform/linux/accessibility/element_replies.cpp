#include "platform/linux/accessibility/element_replies.h"

#include <string_view>

#include "platform/linux/accessibility/accessible_replies.h"

namespace vellora {

namespace {

// Has `take` told of each entry; false for another signature.
template <class Take>
bool readTexts(sd_bus_message* reply, Take take) {
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "{ss}") <= 0) return false;
  const char* name = nullptr;
  const char* value = nullptr;
  while (sd_bus_message_read(reply, "{ss}", &name, &value) > 0) take(std::string_view(name), value);
  return true;
}

}  // namespace

std::optional<ElementAttributes> readAttributes(sd_bus_message* reply) {
  ElementAttributes attributes;
  const bool isRead = readTexts(reply, [&](std::string_view name, const char* value) {
    if (name == "class") attributes.classes = value;
    if (name == "id") attributes.id = value;
  });
  if (!isRead) return std::nullopt;
  return attributes;
}

std::optional<std::string> readAddress(sd_bus_message* reply) {
  std::string address;
  const bool isRead = readTexts(reply, [&](std::string_view name, const char* value) {
    if (name == "URI" || name == "DocURL") address = value;
  });
  if (!isRead) return std::nullopt;
  return address;
}

std::optional<AccessibleReference> readReferenceProperty(sd_bus_message* reply) {
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'v', "(so)") <= 0) {
    return std::nullopt;
  }
  return readReference(reply);
}

}  // namespace vellora
