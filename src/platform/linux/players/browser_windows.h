#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// What a description writes among its windows' classes for those of all browsers.
inline constexpr std::string_view browsersWord = "@browsers";

// The class parts of WM_CLASS, and on Wayland the application ids, of the browsers on the engines
// Chromium and Gecko, as far as they are known. Sources: Debian's packages of Chromium and Firefox
// ESR as they run, and of the others the StartupWMClass of the desktop entries that they publish,
// and those entries' own names.
const std::vector<std::string_view>& browserWindowClasses();

// The classes as a description may say them: browsersWord in the place of all browsers'.
std::vector<std::string> inShort(const std::vector<std::string>& windowClasses);

}  // namespace vellora
