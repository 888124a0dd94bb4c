#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// What a description writes among its windows' classes for those of all browsers.
inline constexpr std::string_view browsersWord = "@browsers";

// The class parts of WM_CLASS of the browsers on the engines Chromium and Gecko, as far as they are
// known. Sources: Debian's packages of Chromium and Firefox ESR as they run, and the StartupWMClass
// of the desktop entries that the others publish.
const std::vector<std::string_view>& browserWindowClasses();

// The classes as a description may say them: browsersWord in the place of all browsers'.
std::vector<std::string> inShort(const std::vector<std::string>& windowClasses);

}  // namespace vellora
