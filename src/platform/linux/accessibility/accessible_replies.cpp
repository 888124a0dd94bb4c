#include "platform/linux/accessibility/accessible_replies.h"

#include <string_view>
#include <utility>

namespace vellora {

namespace {

constexpr std::string_view nullPath = "/org/a11y/atspi/null";

// At a "(so)": 1 with the reference taken, 0 at the end, negative for anything else.
int takeReference(sd_bus_message* reply, std::optional<AccessibleReference>& reference) {
  const char* bus = nullptr;
  const char* path = nullptr;
  const int result = sd_bus_message_read(reply, "(so)", &bus, &path);
  reference.reset();
  if (result > 0 && *bus != '\0' && path != nullPath) reference = AccessibleReference{bus, path};
  return result;
}

bool isText(const char* contents) {
  return contents != nullptr && contents == std::string_view("s");
}
bool isCount(const char* contents) {
  return contents != nullptr && contents == std::string_view("i");
}

// At a variant: takes it when it is one that `properties` has a place for, else passes over it.
bool takeProperty(sd_bus_message* reply, std::string_view name, AccessibleProperties& properties) {
  char type = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(reply, &type, &contents) <= 0 || type != 'v') return false;
  std::optional<std::string>* text = name == "Name"           ? &properties.name
                                     : name == "Description"  ? &properties.description
                                     : name == "AccessibleId" ? &properties.identifier
                                                              : nullptr;
  if (text != nullptr && isText(contents)) {
    const char* value = nullptr;
    if (sd_bus_message_read(reply, "v", "s", &value) <= 0) return false;
    *text = value;
    return true;
  }
  if (name == "ChildCount" && isCount(contents)) {
    std::int32_t value = 0;
    if (sd_bus_message_read(reply, "v", "i", &value) <= 0) return false;
    properties.childCount = value;
    return true;
  }
  return sd_bus_message_skip(reply, "v") > 0;
}

}  // namespace

std::optional<std::uint32_t> readNumber(sd_bus_message* reply) {
  std::uint32_t value = 0;
  if (reply == nullptr || sd_bus_message_read(reply, "u", &value) <= 0) return std::nullopt;
  return value;
}

std::optional<std::string> readText(sd_bus_message* reply) {
  const char* value = nullptr;
  if (reply == nullptr || sd_bus_message_read(reply, "s", &value) <= 0) return std::nullopt;
  return value;
}

std::optional<std::uint64_t> readStates(sd_bus_message* reply) {
  const void* words = nullptr;
  std::size_t size = 0;
  if (reply == nullptr || sd_bus_message_read_array(reply, 'u', &words, &size) <= 0)
    return std::nullopt;
  const auto* word = static_cast<const std::uint32_t*>(words);
  std::uint64_t states = 0;
  if (size >= sizeof(*word)) states = word[0];
  if (size >= 2 * sizeof(*word)) states |= std::uint64_t{word[1]} << 32U;
  return states;
}

namespace {

std::optional<AccessibleExtents> readExtents(sd_bus_message* reply, const char* signature) {
  AccessibleExtents extents;
  if (reply == nullptr || sd_bus_message_read(reply, signature, &extents.x, &extents.y,
                                              &extents.width, &extents.height) <= 0) {
    return std::nullopt;
  }
  return extents;
}

}  // namespace

std::optional<AccessibleExtents> readExtents(sd_bus_message* reply) {
  return readExtents(reply, "(iiii)");
}

std::optional<AccessibleExtents> readRangeExtents(sd_bus_message* reply) {
  const auto extents = readExtents(reply, "iiii");
  return extents && extents->width > 0 && extents->height > 0 ? extents : std::nullopt;
}

std::optional<std::string> readTextProperty(sd_bus_message* reply) {
  const char* value = nullptr;
  if (reply == nullptr || sd_bus_message_read(reply, "v", "s", &value) <= 0) return std::nullopt;
  return value;
}

std::optional<std::int32_t> readCountProperty(sd_bus_message* reply) {
  std::int32_t value = 0;
  if (reply == nullptr || sd_bus_message_read(reply, "v", "i", &value) <= 0) return std::nullopt;
  return value;
}

std::optional<AccessibleProperties> readAllProperties(sd_bus_message* reply) {
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "{sv}") <= 0)
    return std::nullopt;
  AccessibleProperties properties;
  while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(reply, "s", &name) <= 0) return std::nullopt;
    if (!takeProperty(reply, name, properties)) return std::nullopt;
    if (sd_bus_message_exit_container(reply) < 0) return std::nullopt;
  }
  return properties;
}

std::optional<AccessibleReference> readReference(sd_bus_message* reply) {
  std::optional<AccessibleReference> reference;
  if (reply != nullptr) takeReference(reply, reference);
  return reference;
}

std::optional<std::vector<AccessibleReference>> readReferences(sd_bus_message* reply,
                                                               std::size_t most) {
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "(so)") <= 0)
    return std::nullopt;
  std::vector<AccessibleReference> references;
  std::optional<AccessibleReference> reference;
  while (references.size() < most && takeReference(reply, reference) > 0) {
    if (reference) references.push_back(std::move(*reference));
  }
  return references;
}

}  // namespace vellora
