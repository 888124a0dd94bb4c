#include "platform/linux/accessibility/plain_element.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <variant>

namespace vellora {

AttributeValue PlainElement::attribute(std::string_view attribute) {
  if (attribute == "AXWindows") return isProgram_ ? windows() : AttributeValue();
  if (attribute == "AXMinimized") return hasState(15);  // ICONIFIED
  if (attribute == "AXChildren") return children();
  if (attribute == "AXRole") return role();
  if (attribute == "AXTitle") return property("Name");
  if (attribute == "AXDescription") return property("Description");
  if (attribute == "AXIdentifier") return property("AccessibleId");
  if (attribute == "AXPosition" || attribute == "AXSize") return extents(attribute == "AXSize");
  return {};
}

std::shared_ptr<PlainElement> PlainElement::program(const std::string& address,
                                                    const std::string& name) {
  sd_bus* made = nullptr;
  sd_bus_new(&made);
  std::shared_ptr<sd_bus> connection(made, BusCloser());
  sd_bus_set_address(made, address.c_str());
  sd_bus_set_bus_client(made, 1);
  sd_bus_start(made);
  return std::make_shared<PlainElement>(connection, name, "/org/a11y/atspi/accessible/root", true);
}

std::shared_ptr<PlainElement> PlainElement::program(pid_t process) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return nullptr;
  const std::shared_ptr<sd_bus> session(opened, BusCloser());
  PlainElement services(session, "org.a11y.Bus", "/org/a11y/bus", false);
  const BusMessagePtr reply = services.call("org.a11y.Bus", "GetAddress");
  const char* address = nullptr;
  if (!reply || sd_bus_message_read(reply.get(), "s", &address) <= 0) return nullptr;
  const auto registry = program(std::string(address), "org.a11y.atspi.Registry");
  const AttributeValue programs = registry->children();
  const auto* list = std::get_if<AccessibilityElements>(&programs);
  if (list == nullptr) return nullptr;
  PlainElement driver(registry->bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", false);
  for (const auto& element : *list) {
    auto& found = static_cast<PlainElement&>(*element);
    const BusMessagePtr answer =
        driver.call("org.freedesktop.DBus", "GetConnectionUnixProcessID", "s", found.name_.c_str());
    std::uint32_t number = 0;
    if (answer && sd_bus_message_read(answer.get(), "u", &number) > 0 &&
        number == static_cast<std::uint32_t>(process)) {
      return std::make_shared<PlainElement>(found.bus_, found.name_, found.path_, true);
    }
  }
  return nullptr;
}

BusMessagePtr PlainElement::call(const char* interface, const char* member, const char* types,
                                 const char* first, const char* second) {
  sd_bus_message* made = nullptr;
  if (sd_bus_message_new_method_call(bus_.get(), &made, name_.c_str(), path_.c_str(), interface,
                                     member) < 0) {
    return nullptr;
  }
  const BusMessagePtr question(made);
  if (first != nullptr) sd_bus_message_append(made, types, first, second);
  if (first == nullptr && *types != '\0') sd_bus_message_append(made, types, 0U);
  sd_bus_message* reply = nullptr;
  sd_bus_call(bus_.get(), made, 5'000'000, nullptr, &reply);
  return BusMessagePtr(reply);
}

std::optional<std::uint32_t> PlainElement::roleNumber() {
  const BusMessagePtr reply = call("org.a11y.atspi.Accessible", "GetRole");
  std::uint32_t role = 0;
  if (!reply || sd_bus_message_read(reply.get(), "u", &role) <= 0) return std::nullopt;
  return role;
}

AttributeValue PlainElement::role() {
  const auto role = roleNumber();
  if (!role) return {};
  return std::string(*role == 43   ? "AXButton"
                     : *role == 49 ? "AXScrollArea"
                     : *role == 16 ? "AXWindow"
                     : *role == 23 ? "AXWindow"
                     : *role == 69 ? "AXWindow"
                     : *role == 29 ? "AXStaticText"
                                   : "AXUnknown");
}

AttributeValue PlainElement::property(const char* name) {
  const BusMessagePtr reply =
      call("org.freedesktop.DBus.Properties", "Get", "ss", "org.a11y.atspi.Accessible", name);
  const char* value = nullptr;
  if (!reply || sd_bus_message_read(reply.get(), "v", "s", &value) <= 0) return {};
  return std::string(value);
}

AttributeValue PlainElement::children() {
  const BusMessagePtr reply = call("org.a11y.atspi.Accessible", "GetChildren");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(so)") <= 0) return {};
  AccessibilityElements list;
  const char* name = nullptr;
  const char* path = nullptr;
  while (sd_bus_message_read(reply.get(), "(so)", &name, &path) > 0) {
    const bool isThere = *name && std::string_view(path) != "/org/a11y/atspi/null";
    if (isThere) list.push_back(std::make_shared<PlainElement>(bus_, name, path, false));
  }
  return list;
}

AttributeValue PlainElement::windows() {
  AttributeValue value = children();
  if (auto* list = std::get_if<AccessibilityElements>(&value)) {
    std::ranges::stable_partition(*list, [](const auto& window) {
      return static_cast<PlainElement&>(*window).hasState(1);  // ACTIVE
    });
    std::ranges::stable_partition(*list, [](const auto& window) {
      return static_cast<PlainElement&>(*window).roleNumber() != 69;  // a popup
    });
  }
  return value;
}

bool PlainElement::hasState(unsigned state) {
  const BusMessagePtr reply = call("org.a11y.atspi.Accessible", "GetState");
  const void* words = nullptr;
  std::size_t size = 0;
  if (!reply || sd_bus_message_read_array(reply.get(), 'u', &words, &size) <= 0) return false;
  return size >= 4 && (*static_cast<const std::uint32_t*>(words) >> state & 1U) != 0;
}

AttributeValue PlainElement::extents(bool isSize) {
  const BusMessagePtr reply = call("org.a11y.atspi.Component", "GetExtents", "u");
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  if (!reply || sd_bus_message_read(reply.get(), "(iiii)", &x, &y, &width, &height) <= 0) return {};
  if (isSize) return Size{static_cast<double>(width), static_cast<double>(height)};
  return Point{static_cast<double>(x), static_cast<double>(y)};
}

}  // namespace vellora
