#include <gtest/gtest.h>

#include "golden/character_set.h"
#include "matching/trimming.h"

namespace vellora {
namespace {

TEST(GoldenTest, WhitespaceAndNewlines) {
  golden::checkSet("whitespace-and-newlines.tsv",
                   [](char32_t c) { return OverlayMatching::isWhitespaceOrNewline(c); });
}

}  // namespace
}  // namespace vellora
