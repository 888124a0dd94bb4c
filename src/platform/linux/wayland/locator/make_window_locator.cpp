#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/environment.h"
#include "platform/linux/glib/session_bus.h"
#include "platform/linux/wayland/locator/hyprland_locator.h"
#include "platform/linux/wayland/locator/i3_connection.h"
#include "platform/linux/wayland/locator/i3_locator.h"
#include "platform/linux/wayland/locator/kwin_locator.h"
#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

namespace {

constexpr int patience = 250;  // milliseconds, with the bus

// Plasma says which it is. KWin 6 has another scripting interface.
bool mayBeKWin5() { return environmentVariable("KDE_SESSION_VERSION").value_or("5") == "5"; }

// Whether somebody takes connections at the path.
bool isServed(const std::string& path) {
  I3Connection connection({.told = [](const I3Message&) {}, .ended = [] {}});
  return connection.open(path);
}

bool isKWinOnBus() {
  const SessionBus bus = connectToSessionBus(std::chrono::milliseconds(patience));
  if (!bus) return false;
  const GVariantPtr answer(g_dbus_connection_call_sync(
      bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "NameHasOwner", g_variant_new("(s)", "org.kde.KWin"), G_VARIANT_TYPE("(b)"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, nullptr));
  gboolean isThere = FALSE;
  if (answer) g_variant_get(answer.get(), "(b)", &isThere);
  return isThere != FALSE;
}

}  // namespace

std::unique_ptr<WindowLocator> makeWindowLocator() {
  // First what answers: users of other compositors call their desktop KDE's too, for its themes.
  for (const char* const name : {"SWAYSOCK", "I3SOCK"}) {
    auto path = environmentVariable(name);
    if (path && isServed(*path)) return std::make_unique<I3Locator>(*std::move(path));
  }
  if (std::string folder = HyprlandLocator::servedFolder(); !folder.empty()) {
    return std::make_unique<HyprlandLocator>(std::move(folder));
  }
  if (!mayBeKWin5()) return nullptr;
  const std::string desktop = ":" + environmentVariable("XDG_CURRENT_DESKTOP").value_or("") + ":";
  if (desktop.find(":KDE:") != desktop.npos || isKWinOnBus()) {
    return std::make_unique<KWinLocator>();
  }
  return nullptr;
}

}  // namespace vellora
