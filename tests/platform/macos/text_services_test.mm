#include "platform/text_services.h"

#include <cstddef>
#include <sstream>

#include <gtest/gtest.h>

#include "golden/golden_table.h"
#include "golden/known_character.h"

// The tables of tests/golden are held against these services by golden_test, but for the
// alphanumerics: a system of a later Unicode version has more of them, one of an earlier version
// fewer.
namespace vellora {
namespace {

TEST(TextServicesTest, EveryListedCharacterIsAlphanumeric) {
  std::size_t known = 0;
  golden::everyRow("alphanumerics.tsv", 2, [&known](const golden::Row& row) {
    std::ostringstream missing;
    for (char32_t c = golden::codePoint(row[0]); c <= golden::codePoint(row[1]); ++c) {
      if (!golden::isKnown(c)) continue;
      ++known;
      if (!TextServices::isAlphanumeric(c)) {
        missing << std::hex << static_cast<unsigned>(c) << " is missing; ";
      }
    }
    return missing.str();
  });
  EXPECT_GT(known, 130'000U);  // those of Unicode 13 and before
}

}  // namespace
}  // namespace vellora
