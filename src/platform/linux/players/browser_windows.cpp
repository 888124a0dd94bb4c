#include "platform/linux/players/browser_windows.h"

#include <algorithm>
#include <iterator>

namespace vellora {

const std::vector<std::string_view>& browserWindowClasses() {
  static const std::vector<std::string_view> classes{
      // On X11.
      "Chromium",
      "Chromium-browser",
      "Google-chrome",
      "Google-chrome-beta",
      "Google-chrome-unstable",
      "Brave-browser",
      "Brave-browser-beta",
      "Brave-browser-nightly",
      "Microsoft-edge",
      "Microsoft-edge-beta",
      "Microsoft-edge-dev",
      "Opera",
      "Vivaldi-stable",
      "Vivaldi-snapshot",
      "Thorium-browser",
      "firefox",
      "Firefox",
      "firefox-esr",
      "Firefox-esr",
      "firefox-nightly",
      "firefox-aurora",
      "firefoxdeveloperedition",
      "org.mozilla.firefox",
      "librewolf",
      "LibreWolf",
      "waterfox",
      "Waterfox",
      "floorp",
      "zen",
      "IceCat",
      // On Wayland, where others have the name above too.
      "chromium",
      "chromium-browser",
      "google-chrome",
      "google-chrome-beta",
      "google-chrome-unstable",
      "brave-browser",
      "brave-browser-beta",
      "brave-browser-nightly",
      "microsoft-edge",
      "microsoft-edge-beta",
      "microsoft-edge-dev",
      "opera",
      "vivaldi-stable",
      "vivaldi-snapshot",
      "thorium-browser",
  };
  return classes;
}

std::vector<std::string> inShort(const std::vector<std::string>& windowClasses) {
  const auto& browsers = browserWindowClasses();
  const bool hasAll = std::ranges::all_of(
      browsers, [&](auto name) { return std::ranges::count(windowClasses, name) > 0; });
  if (!hasAll) return windowClasses;
  std::vector<std::string> names{std::string(browsersWord)};
  std::ranges::copy_if(windowClasses, std::back_inserter(names), [&](const std::string& name) {
    return std::ranges::count(browsers, name) == 0;
  });
  return names;
}

}  // namespace vellora
