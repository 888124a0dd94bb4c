#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Reads Timed Text Markup Language (W3C TTML 1 and 2) as lyrics come in it: each <p> with a "begin"
// is a line, a <br> parts it in two. Spans with ttm:role "x-translation" are the line's
// translation, "x-roman" ones a transcription and "x-bg" ones background singing, both left out.
// Translations within the head, in <translation xml:lang="…"> with <text for="KEY">, are taken by
// the line's "key". Of several languages the one nearest to `wantedLanguage` (BCP 47, or "") is
// taken, the first of those. A document without any "begin" is a text without times. `text` is
// UTF-8. Any thread.
LyricFile readTtml(std::string_view name, std::string_view text, std::string_view wantedLanguage);

}  // namespace vellora::companion
