#pragma once

#include <string_view>

namespace vellora::companion {

// How far two languages are from each other at least that have nothing in common.
inline constexpr int anotherLanguage = 1000;

// How far a language is from the wanted one, both BCP 47 tags: 0 for that language itself, more the
// more of the wanted tag has to be dropped from its end before the two meet, as RFC 4647, section
// 3.4 looks languages up; a variant that nobody asked for is farther than the plain language.
// 0 where `wanted` is empty. Any thread.
int remoteness(std::string_view language, std::string_view wanted);

}  // namespace vellora::companion
