#include "matching/translation_index.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

#include "base/text.h"
#include "matching/normalization.h"
#include "matching/trimming.h"
#include "platform/text_services.h"

namespace vellora {

// A run says what a row says when its joined key equals the row's key and each shorter joined key
// on the way is a beginning of it by whole characters. Where the keys are equal, the second is a
// matter of the lines alone: the seam between each two of them must not fall inside a character.
// Then the canonical form of the joined key is the canonical forms of the lines' keys in a row,
// because no mark is reordered and nothing composes across the seam. So all runs can be listed
// beforehand.
TranslationIndex::TranslationIndex(OverlayLines lines) : given_(std::move(lines)) {
  addLines();
  addRuns();
}

void TranslationIndex::addLines() {
  lines_.reserve(given_.size());
  bool adjacent = false;
  for (const OverlayLine& line : given_) {
    const std::string_view translation = OverlayMatching::trimmed(line.translation);
    const std::string key =
        translation.empty() ? std::string()
                            : TextServices::canonicalForm(OverlayMatching::normalized(line.source));
    if (key.empty()) {
      adjacent = false;
      continue;
    }
    if (adjacent) {
      const std::string_view before = keyOf(lines_.size() - 1, 1);
      lines_.back().runsOn = textBeginsWith(std::string(before) + key, before);
    }
    keys_ += key;
    lines_.push_back({keys_.size(), translation, false});
    adjacent = true;
  }
}

void TranslationIndex::addRuns() {
  runs_.reserve(lines_.size() * longestRun);
  const std::hash<std::string_view> hash;
  for (std::uint32_t first = 0; first < lines_.size(); ++first) {
    for (std::uint32_t count = 1; count <= longestRun; ++count) {
      runs_.push_back({hash(keyOf(first, count)), first, count});
      if (!lines_[first + count - 1].runsOn) break;
    }
  }
  std::ranges::sort(runs_, [](const Run& a, const Run& b) {
    return std::tie(a.hash, a.first, a.count) < std::tie(b.hash, b.first, b.count);
  });
}

std::string_view TranslationIndex::keyOf(std::size_t first, std::size_t count) const {
  const std::size_t begin = first == 0 ? 0 : lines_[first - 1].keyEnd;
  return std::string_view(keys_).substr(begin, lines_[first + count - 1].keyEnd - begin);
}

std::optional<std::string> TranslationIndex::translation(std::string_view row) const {
  if (lines_.empty()) return std::nullopt;
  return translationForKey(OverlayMatching::normalized(row));
}

std::optional<std::string> TranslationIndex::translationForKey(std::string_view key) const {
  if (key.empty()) return std::nullopt;
  const std::string target = TextServices::canonicalForm(key);
  const std::size_t hash = std::hash<std::string_view>{}(target);
  for (auto run = std::ranges::lower_bound(runs_, hash, {}, &Run::hash);
       run != runs_.end() && run->hash == hash; ++run) {
    if (keyOf(run->first, run->count) != target) continue;
    std::string result(lines_[run->first].translation);
    for (std::size_t line = run->first + 1; line < run->first + run->count; ++line) {
      result += ' ';
      result += lines_[line].translation;
    }
    return result;
  }
  return std::nullopt;
}

}  // namespace vellora
