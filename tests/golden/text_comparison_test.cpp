#include <gtest/gtest.h>

#include "base/text.h"
#include "golden/golden_table.h"
#include "matching/normalization.h"

namespace vellora {
namespace {

TEST(GoldenTest, ComparisonKeys) {
  golden::everyRow("normalized.tsv", 2, [](const golden::Row& row) {
    const std::string expected = golden::fromBase64(row[1]);
    const std::string actual = OverlayMatching::normalized(golden::fromBase64(row[0]));
    return actual == expected
               ? std::string()
               : "got " + golden::toCodePoints(actual) + ", not " + golden::toCodePoints(expected);
  });
}

TEST(GoldenTest, TextEqualityAndBeginning) {
  golden::everyRow("text-comparison.tsv", 4, [](const golden::Row& row) -> std::string {
    const std::string a = golden::fromBase64(row[0]);
    const std::string b = golden::fromBase64(row[1]);
    if (row[2] != "equal" && row[2] != "different") return "neither equal nor different";
    if (row[3] != "prefix" && row[3] != "no") return "neither prefix nor no";
    const bool equal = row[2] == "equal";
    if (textEquals(a, b) != equal) return "a == b is wrong";
    if (textEquals(b, a) != equal) return "b == a is wrong";
    if (equal && textHash(a) != textHash(b)) return "equal texts with different hashes";
    if (textBeginsWith(a, b) != (row[3] == "prefix")) return "begins with is wrong";
    return "";
  });
}

}  // namespace
}  // namespace vellora
