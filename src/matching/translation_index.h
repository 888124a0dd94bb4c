#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "exchange/records/records.h"

namespace vellora {

// The lines of one snapshot, prepared for looking up rows: a plain value that shares the lines.
// Whoever keeps a set of lines keeps the index beside it and replaces both together:
//
//   if (snapshot.lines != lastLines) {
//     lastLines = snapshot.lines;
//     index = TranslationIndex(lastLines);
//   }
//   ... index.translation(row.text) ...
//
// Making it costs one key for each line; a lookup costs the row's own key and one search. One
// thread at a time.
class TranslationIndex {
 public:
  // Longest run, in lines.
  static constexpr std::size_t longestRun = 6;

  // Of no lines: every lookup gives nothing.
  TranslationIndex() = default;
  explicit TranslationIndex(OverlayLines lines);

  // The same as OverlayMatching::translation(row, lines).
  std::optional<std::string> translation(std::string_view row) const;

  // The same for a row whose key (OverlayMatching::normalized) is at hand.
  std::optional<std::string> translationForKey(std::string_view key) const;

 private:
  // A line that may be part of a run. Its key stands in `keys_` behind that of the line before, so
  // that the joined key of a run is one stretch of that text.
  struct Line {
    std::size_t keyEnd;
    std::string_view translation;  // in `given_`
    bool runsOn;                   // the next line may follow in the same run
  };

  struct Run {
    std::size_t hash;  // of the joined key
    std::uint32_t first;
    std::uint32_t count;
  };

  void addLines();
  void addRuns();
  std::string_view keyOf(std::size_t first, std::size_t count) const;

  OverlayLines given_;
  std::string keys_;
  std::vector<Line> lines_;
  std::vector<Run> runs_;  // by hash, then by first line, then by length
};

// The index of a snapshot's lines, made where there is time for it: with as many lines as a file
// can hold that takes seconds. A plain value; nothing in it where there is none.
struct PreparedIndex {
  PreparedIndex() = default;
  // Makes it. Any thread.
  explicit PreparedIndex(std::shared_ptr<const OverlaySnapshot> of)
      : snapshot(std::move(of)), index(std::make_shared<const TranslationIndex>(snapshot->lines)) {}

  bool isOf(const OverlayLines& lines) const { return snapshot && snapshot->lines == lines; }

  std::shared_ptr<const OverlaySnapshot> snapshot;
  std::shared_ptr<const TranslationIndex> index;
};

}  // namespace vellora
