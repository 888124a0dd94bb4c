#include "matching/translation_index.h"

#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/text.h"
#include "matching/normalization.h"
#include "matching/plain_translation.h"
#include "matching/translation.h"

namespace vellora {
namespace {

using Lines = std::vector<OverlayLine>;
using Random = std::mt19937;

// Few pieces, so that lines and rows repeat, begin with one another and break characters in two:
// letters with and without marks, marks alone, syllables and their parts, a conjunct's parts,
// Traditional characters, and what a key drops.
const std::vector<std::string> pieces = {
    "a",      "A", "b",  "á",  "\u0301", "か", "が", "\u3099", "가",     "\u11A8", "각", "क",
    "\u094D", "ष", "愛", "爱", " ",      "♪",  "ｶ",  "\uFF9E", "\u0316", "\u200D", "ab", "1"};

std::size_t below(Random& random, std::size_t count) {
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

std::string randomText(Random& random, std::size_t alphabet, std::size_t longest) {
  std::string text;
  for (std::size_t left = below(random, longest + 1); left > 0; --left) {
    text += pieces[below(random, alphabet)];
  }
  return text;
}

Lines randomLines(Random& random, std::size_t alphabet) {
  Lines lines;
  for (std::size_t left = below(random, 16); left > 0; --left) {
    const bool untranslated = below(random, 12) == 0;
    lines.push_back({randomText(random, alphabet, 3),
                     untranslated ? " \n" : " t" + std::to_string(lines.size()) + " "});
  }
  return lines;
}

// Rows that have something to do with the lines, or nothing.
std::string randomRow(Random& random, std::size_t alphabet, const Lines& lines) {
  std::string row;
  if (!lines.empty() && below(random, 4) != 0) {
    const std::size_t start = below(random, lines.size());
    for (std::size_t at = start; at < lines.size() && at <= start + below(random, 8); ++at) {
      row += lines[at].source;
    }
  }
  if (row.empty() || below(random, 6) == 0) row += randomText(random, alphabet, 4);
  return row;
}

TEST(TranslationIndexTest, AgreesWithThePlainSearchOnRandomLines) {
  std::map<std::string, int> seen;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    Random random(seed);
    const std::size_t alphabet = 2 + below(random, pieces.size() - 1);
    const Lines lines = randomLines(random, alphabet);
    const TranslationIndex index(lines);
    for (int rows = 0; rows < 8; ++rows) {
      const std::string row = randomRow(random, alphabet, lines);
      const std::optional<std::string> expected = testing::plainTranslation(row, lines);
      ASSERT_EQ(index.translation(row), expected) << "seed " << seed << ", row " << row;
      ASSERT_EQ(OverlayMatching::translation(row, lines), expected) << "seed " << seed;
      ++seen[!expected ? "none" : expected->find(' ') == std::string::npos ? "one" : "run"];
    }
  }
  // The comparison is worth something only where each outcome was met often.
  EXPECT_GT(seen["none"], 2000);
  EXPECT_GT(seen["one"], 2000);
  EXPECT_GT(seen["run"], 2000);
}

TEST(TranslationIndexTest, AgreesWithThePlainSearchOnManyLines) {
  Random random(7);
  Lines lines;
  for (int at = 0; at < 400; ++at) {
    lines.push_back({"line " + std::to_string(below(random, 60)), "t" + std::to_string(at)});
  }
  const TranslationIndex index(lines);
  for (std::size_t start = 0; start < lines.size(); start += 3) {
    std::string row;
    for (std::size_t at = start; at < std::min(lines.size(), start + 7); ++at) {
      row += lines[at].source + " ";
      EXPECT_EQ(index.translation(row), testing::plainTranslation(row, lines)) << row;
    }
  }
}

TEST(TranslationIndexTest, KeysWithTheSameHashAreToldApart) {
  // A pair that shares its hash in GNU's library, found by turning that hash round.
  const std::string first = "gnotihvtcglvkntb";
  const std::string second = "hfaflahnwoowfwou";
  EXPECT_EQ(TranslationIndex(Lines{{first, "one"}}).translation(second), std::nullopt);
  const TranslationIndex both(Lines{{first, "one"}, {second, "two"}});
  EXPECT_EQ(both.translation(first), "one");
  EXPECT_EQ(both.translation(second), "two");
}

TEST(TranslationIndexTest, IndexOfNoLinesFindsNothing) {
  EXPECT_EQ(TranslationIndex().translation("a"), std::nullopt);
  EXPECT_EQ(TranslationIndex(Lines{}).translationForKey("a"), std::nullopt);
}

TEST(TranslationIndexTest, IndexOutlivesItsLines) {
  TranslationIndex index;
  {
    const Lines lines = {{"One fairly long line of a song", "Eine recht lange Zeile eines Liedes"}};
    index = TranslationIndex(lines);
  }
  EXPECT_EQ(index.translation("one fairly long line of a song"),
            "Eine recht lange Zeile eines Liedes");
}

TEST(TranslationIndexTest, ReadyKeyGivesTheSameAsItsRow) {
  const TranslationIndex index(Lines{{"が", "ga"}, {"き", "ki"}});
  EXPECT_EQ(index.translationForKey(OverlayMatching::normalized("がき")), "ga ki");
  EXPECT_EQ(index.translationForKey("か\u3099"), "ga");
  EXPECT_EQ(index.translationForKey(""), std::nullopt);
}

}  // namespace
}  // namespace vellora
