#include <gtest/gtest.h>

#include "golden/golden_table.h"
#include "platform/text_services.h"

namespace vellora {
namespace {

std::string checkFolding(const golden::Row& row) {
  const std::string expected = golden::fromCodePoints(row[1]);
  const std::string actual = TextServices::folded(golden::fromCodePoints(row[0]));
  return actual == expected ? std::string() : "folded to " + golden::toCodePoints(actual);
}

TEST(GoldenTest, SingleCharactersFold) { golden::everyRow("folding.tsv", 2, checkFolding); }

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
