#pragma once

#include <string>
#include <string_view>

namespace vellora::companion {

// How many columns of a terminal the text takes: two for East Asian wide and full-width characters
// (Unicode Standard Annex #11), none for marks and format characters. The same under every locale.
int textWidth(std::string_view text);

// The text in at most `columns`; "…" stands for what is cut off.
std::string fitted(std::string_view text, int columns);

}  // namespace vellora::companion
