#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include "platform/accessibility.h"
#include "platform/linux/accessibility/bus_handles.h"

namespace vellora {

// The plain way to read a program: each attribute is asked with one call that waits, and nothing is
// kept. The volleys must come to the same. It knows only the roles that the tests' trees have.
class PlainElement final : public AccessibilityElement {
 public:
  PlainElement(std::shared_ptr<sd_bus> bus, std::string name, std::string path, bool isProgram)
      : bus_(std::move(bus)),
        name_(std::move(name)),
        path_(std::move(path)),
        isProgram_(isProgram) {}

  AttributeValue attribute(std::string_view attribute) override;

  // The program of that unique name on the bus at that address.
  static std::shared_ptr<PlainElement> program(const std::string& address, const std::string& name);

  // The program of that process, among those of the session's accessibility bus; null when it is
  // not there (yet).
  static std::shared_ptr<PlainElement> program(pid_t process);

 private:
  // Null without an answer.
  BusMessagePtr call(const char* interface, const char* member, const char* types = "",
                     const char* first = nullptr, const char* second = nullptr);
  std::optional<std::uint32_t> roleNumber();
  AttributeValue role();
  AttributeValue property(const char* name);
  AttributeValue children();
  AttributeValue windows();  // the active one first, popups last
  bool hasState(unsigned state);
  AttributeValue extents(bool isSize);

  std::shared_ptr<sd_bus> bus_;
  std::string name_;
  std::string path_;
  bool isProgram_;
};

}  // namespace vellora
