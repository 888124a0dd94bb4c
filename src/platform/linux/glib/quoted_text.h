#pragma once

#include <string>

namespace vellora {

// The text, which must be UTF-8, without control characters, so that it cannot steer a terminal: a
// question mark stands for each, and an ellipsis for what is beyond `longest` characters.
std::string printable(const std::string& text, int longest);

// The same in double quotes, short.
std::string inQuotes(const std::string& text);

}  // namespace vellora
