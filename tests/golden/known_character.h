#pragma once

namespace vellora::golden {

// Whether the running system's text services know the character at all: the tables have characters
// of a Unicode version that a system may not have reached.
bool isKnown(char32_t character);

}  // namespace vellora::golden
