#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/records/records.h"

namespace vellora::OverlayMatching {

// The translation of the lyric row `row`: that of the line whose source has the row's key, or of
// the run of at most six consecutive lines whose sources' keys, joined, are the row's key.
// Translations are trimmed and joined with single spaces. The earliest start wins. A line with an
// empty key or a translation of nothing but white space is part of no run, and a joined key must
// end between two whole characters of the row's key. Nothing where no run says exactly what the row
// says.
//
// Keeps nothing: it computes the key of every line at each call. Who looks up many rows among the
// same lines keeps a TranslationIndex of them. Any thread.
std::optional<std::string> translation(std::string_view row, const std::vector<OverlayLine>& lines);

}  // namespace vellora::OverlayMatching
