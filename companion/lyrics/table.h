#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Tables of source and translation. Their lines have no times. `text` is UTF-8. Any thread.

// Lines "source<tab>translation"; what follows a second tab is a remark. Blank lines and lines that
// begin with "#" are skipped.
LyricFile readTsv(std::string_view name, std::string_view text);

// The entries of a PO file as gettext has them: msgid and msgstr, texts in double quotes that may
// go on over several lines, with the escapes of C. Entries that are fuzzy or obsolete are left out.
// The header's X-Title and X-Artist are the song's tags.
LyricFile readPo(std::string_view name, std::string_view text);

}  // namespace vellora::companion
