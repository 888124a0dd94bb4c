#include <string>
#include <vector>

#include "base/text.h"
#include "base/utf8.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "matching/normalization.h"
#include "matching/plain_translation.h"
#include "matching/track_matching.h"
#include "matching/translation.h"
#include "matching/translation_index.h"

namespace vellora {

namespace {

void requireKey(const std::string& text) {
  const std::string key = OverlayMatching::normalized(text);
  require(isWellFormed(key), "a key's UTF-8");
  require(OverlayMatching::normalized(wellFormed(text)) == key, "the key of what is not UTF-8");
  require(textEquals(text, text) && textBeginsWith(text, text), "a text equals itself");
  require(textHash(text) == textHash(std::string(text)), "a text's hash");
}

void requireTrackMatch(const std::string& title, const std::string& artist,
                       const std::string& shown) {
  const std::string joined =
      OverlayMatching::normalized(title) + OverlayMatching::normalized(artist);
  const bool named =
      !OverlayMatching::normalized(title).empty() && !OverlayMatching::normalized(artist).empty();
  require(OverlayMatching::trackMatches(shown, title, artist) ==
              (named && textBeginsWith(OverlayMatching::normalized(shown), joined)),
          "the track that is shown");
}

}  // namespace

// Lines of the input: the row, then a source and a translation a line, between them a tabulator.
void fuzzLookup(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::string row(input.takeUntil('\n'));
  std::vector<OverlayLine> lines;
  while (!input.isEmpty() && lines.size() < 40) {
    FuzzInput line(input.takeUntil('\n'));
    const std::string source(line.takeUntil('\t'));
    lines.push_back({source, std::string(line.rest())});
  }
  requireKey(row);
  for (const OverlayLine& line : lines) requireKey(line.source);

  const auto expected = testing::plainTranslation(row, lines);
  require(OverlayMatching::translation(row, lines) == expected, "the plain lookup's translation");
  const TranslationIndex index(lines);
  require(index.translation(row) == expected, "the index's translation");
  std::string joined = row;
  for (const OverlayLine& line : lines) {
    require(index.translation(line.source) == testing::plainTranslation(line.source, lines),
            "a line's own translation");
    joined += line.source;
  }
  require(index.translation(joined) == testing::plainTranslation(joined, lines),
          "the translation of all lines joined");
  if (!lines.empty()) requireTrackMatch(row, lines[0].source, lines[0].translation);
}

}  // namespace vellora
