#pragma once

#include <string>
#include <string_view>

namespace vellora {

// `text` as captions show it: U+FFFD in the place of what is not UTF-8; '\n' for each end of a line
// that Unicode knows (UAX #14, class BK and what goes with it) but U+2028, which Pango keeps within
// its paragraph; and none of the other control characters, which have no shape, but the tab. Any
// thread.
std::string shownText(std::string_view text);

// What shownText gave, with one space for each end of a line and the blanks and empty lines around
// it. Nothing is left of those at its own end. Any thread.
std::string onOneLine(std::string_view shown);

// Whether that is a space of any width, a tab or the end of a line.
bool isBlank(char32_t character);

}  // namespace vellora
