#pragma once

#include <string_view>

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

}  // namespace vellora
