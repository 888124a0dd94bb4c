#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace vellora {

// The language whose letter forms the text should have, as an RFC 3066 tag, whatever the user's own
// language is. Han characters are written differently in the languages that share them, so the rest
// of the text tells: kana make it Japanese, Hangul Korean, Bopomofo the Chinese of Taiwan. Of Han
// characters alone, common kanji that neither Chinese has all of are Japanese. What has more
// characters that only Traditional Chinese has than ones that only Simplified Chinese has is
// Taiwan's, and the mainland's the other way round; where neither has more, it is Taiwan's if
// folding Traditional to Simplified would change it, else the mainland's. English is every text
// without these scripts, for its forms do not depend on it. Canonically equivalent texts have the
// same language. Any thread.
const char* languageTag(std::string_view text);

// The same for one text of a translation in `common`: Han characters alone are of that language
// where it has all of them. `common` is a result of `commonLanguage`.
const char* languageTag(std::string_view text, const char* common);

// The language of the Han characters in a translation of these texts, as far as its first
// `mostTexts` with such characters or kana, Hangul or Bopomofo tell; "en" where there are none.
// Kana in every fourth of them make it Japanese, for Chinese quotes some; so do Hangul for Korean.
// Any thread.
inline constexpr std::size_t mostTexts = 300;
const char* commonLanguage(const std::vector<std::string_view>& texts);

}  // namespace vellora
