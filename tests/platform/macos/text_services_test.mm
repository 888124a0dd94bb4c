#include "platform/text_services.h"

#include <sstream>

#include <gtest/gtest.h>

#include "golden/golden_table.h"

// The tables of tests/golden are held against these services by golden_test, but for the
// alphanumerics: a system of a later Unicode version has more of them.
namespace vellora {
namespace {

TEST(TextServicesTest, EveryListedCharacterIsAlphanumeric) {
  golden::everyRow("alphanumerics.tsv", 2, [](const golden::Row& row) {
    std::ostringstream missing;
    for (char32_t c = golden::codePoint(row[0]); c <= golden::codePoint(row[1]); ++c) {
      if (!TextServices::isAlphanumeric(c)) {
        missing << std::hex << static_cast<unsigned>(c) << " is missing; ";
      }
    }
    return missing.str();
  });
}

}  // namespace
}  // namespace vellora
