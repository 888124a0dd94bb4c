#include <cstddef>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "golden/golden_table.h"
#include "golden/known_character.h"
#include "platform/text_services.h"

namespace vellora {
namespace {

bool isKnown(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    if (!golden::isKnown(nextCharacter(text, at))) return false;
  }
  return true;
}

std::string checkFolding(const golden::Row& row) {
  const std::string expected = golden::fromCodePoints(row[1]);
  const std::string actual = TextServices::folded(golden::fromCodePoints(row[0]));
  return actual == expected ? std::string() : "folded to " + golden::toCodePoints(actual);
}

TEST(GoldenTest, SingleCharactersFold) {
  std::size_t unknown = 0;
  golden::everyRow("folding.tsv", 2, [&unknown](const golden::Row& row) {
    if (isKnown(golden::fromCodePoints(row[0]))) return checkFolding(row);
    ++unknown;
    return std::string();
  });
  EXPECT_LT(unknown, 100U) << "characters that the system does not know";
}

TEST(GoldenTest, SequencesWithMarksFold) {
  golden::everyRow("folding-sequences.tsv", 2, checkFolding);
}

TEST(GoldenTest, TraditionalCharactersBecomeSimplified) {
  golden::everyRow("traditional-simplified.tsv", 2, [](const golden::Row& row) {
    const std::optional<std::string> actual =
        TextServices::simplified(golden::fromCodePoints(row[0]));
    if (actual == golden::fromCodePoints(row[1])) return std::string();
    return actual ? "became " + golden::toCodePoints(*actual) : "nothing";
  });
}

}  // namespace
}  // namespace vellora
