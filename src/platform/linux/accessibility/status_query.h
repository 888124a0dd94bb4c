#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// What the session says of its accessibility: the address of the accessibility bus, empty when
// there is none, and whether assistive technologies are switched on.
struct AccessibilityStatus {
  std::string busAddress;
  bool isEnabled = false;

  // Whether programs may be read.
  bool isUsable() const { return isEnabled && !busAddress.empty(); }
};

// The D-Bus names are those of at-spi2-core: org.a11y.Bus owns /org/a11y/bus, which has the
// interfaces org.a11y.Bus (GetAddress) and org.a11y.Status (property IsEnabled).

// Asks for both without starting the service; `answer` is told once: nothing where one of the
// questions failed, as both do without the service.
void askAccessibilityStatus(BusConnection& session,
                            std::function<void(const std::optional<AccessibilityStatus>&)> answer);

// Sets IsEnabled to true and starts the service where it is not running; `done` is told once.
void enableAccessibility(BusConnection& session, std::function<void()> done);

// Match rules of the signals after which the status may be another.
inline constexpr const char* statusChangedRule =
    "type='signal',path='/org/a11y/bus',interface='org.freedesktop.DBus.Properties',"
    "member='PropertiesChanged'";
inline constexpr const char* statusOwnerChangedRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.a11y.Bus'";

}  // namespace vellora
