#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vellora::companion {

// Longest text of a line, in bytes of UTF-8. A line of a song is far shorter; what is longer is
// cut.
inline constexpr std::size_t longestText = 1000;

// `text` without control characters (U+0000 to U+001F, U+007F to U+009F, U+2028 and U+2029; a blank
// stands for each run of them) and without white space at either end. What a hostile file holds can
// then not steer a terminal. What is not UTF-8 is read as U+FFFD.
std::string cleaned(std::string_view text);

// `text` cut to at most `longest` bytes, between two characters.
std::string_view cut(std::string_view text, std::size_t longest);

// In double quotes, cut to a length that a message bears.
std::string inQuotes(std::string_view text);

// The text without its marks. One begins with a character of `openings`, and `lengthOf` says how
// long it is where a text begins with it, or 0 where that is no mark.
std::string withoutMarks(std::string_view text, std::string_view openings,
                         const std::function<std::size_t(std::string_view)>& lengthOf);

// "1 song", "2 songs".
std::string counted(std::size_t count, const char* what);

// Calls `take` with each line's number, from 1, and its text. A line ends with a line feed, a
// carriage return or both. Stops where `take` says false.
void forEachLine(std::string_view text, const std::function<bool(int, std::string_view)>& take);

// ASCII letters only.
std::string lowerCase(std::string_view text);

}  // namespace vellora::companion
