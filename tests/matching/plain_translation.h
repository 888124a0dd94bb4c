#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "exchange/records/records.h"
#include "matching/normalization.h"
#include "matching/trimming.h"

namespace vellora::testing {

// The lookup of a row as a person would do it by hand: every start in turn, line by line, with
// every key computed where it is needed. The measure of the index, for its results and for its
// speed.
inline std::optional<std::string> plainTranslation(std::string_view row,
                                                   const std::vector<OverlayLine>& lines) {
  const std::string target = OverlayMatching::normalized(row);
  if (target.empty()) return std::nullopt;
  for (std::size_t start = 0; start < lines.size(); ++start) {
    std::string joined;
    std::vector<std::string> parts;
    for (std::size_t at = start; at < std::min(lines.size(), start + 6); ++at) {
      const std::string key = OverlayMatching::normalized(lines[at].source);
      const std::string translation(OverlayMatching::trimmed(lines[at].translation));
      if (key.empty() || translation.empty()) break;
      joined += key;
      parts.push_back(translation);
      if (textEquals(joined, target)) {
        std::string result = parts.front();
        for (std::size_t part = 1; part < parts.size(); ++part) result += " " + parts[part];
        return result;
      }
      if (!textBeginsWith(target, joined)) break;
    }
  }
  return std::nullopt;
}

}  // namespace vellora::testing
