#include "platform/linux/players/browser_windows.h"

namespace vellora {

const std::vector<std::string_view>& browserWindowClasses() {
  static const std::vector<std::string_view> classes{
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
  };
  return classes;
}

}  // namespace vellora
