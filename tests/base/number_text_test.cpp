#include "base/number_text.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(NumberTextTest, JsonFormIsTheShortestThatReadsBack) {
  EXPECT_EQ(jsonNumber(42), "42");
  EXPECT_EQ(jsonNumber(42.5), "42.5");
  EXPECT_EQ(jsonNumber(-0.0), "-0");
  EXPECT_EQ(jsonNumber(0), "0");
  EXPECT_EQ(jsonNumber(0.1), "0.1");
  EXPECT_EQ(jsonNumber(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(jsonNumber(-1234.75), "-1234.75");
}

TEST(NumberTextTest, ExponentStandsBelowOneTenThousandthAndAboveTwoToThe53) {
  EXPECT_EQ(jsonNumber(0.0001), "0.0001");
  EXPECT_EQ(jsonNumber(0.00001), "1e-05");
  EXPECT_EQ(jsonNumber(0.00012345), "0.00012345");
  EXPECT_EQ(jsonNumber(1.5e-10), "1.5e-10");
  EXPECT_EQ(jsonNumber(9007199254740992), "9007199254740992");
  EXPECT_EQ(jsonNumber(9007199254740994), "9.007199254740994e+15");
  EXPECT_EQ(jsonNumber(1e16), "1e+16");
  EXPECT_EQ(jsonNumber(-1e100), "-1e+100");
  EXPECT_EQ(jsonNumber(5e-324), "5e-324");
}

TEST(NumberTextTest, JsonHasNoFormForWhatIsNotFinite) {
  EXPECT_EQ(jsonNumber(infinity), std::nullopt);
  EXPECT_EQ(jsonNumber(-infinity), std::nullopt);
  EXPECT_EQ(jsonNumber(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(NumberTextTest, PlainFormHasADigitAfterThePoint) {
  EXPECT_EQ(plainNumber(12.5), "12.5");
  EXPECT_EQ(plainNumber(40), "40.0");
  EXPECT_EQ(plainNumber(-0.0), "-0.0");
  EXPECT_EQ(plainNumber(1e16), "1e+16");
  EXPECT_EQ(plainNumber(infinity), "inf");
  EXPECT_EQ(plainNumber(-infinity), "-inf");
  EXPECT_EQ(plainNumber(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(NumberTextTest, DecimalNumbersAreRead) {
  EXPECT_EQ(parseNumber("750"), 750);
  EXPECT_EQ(parseNumber("+5"), 5);
  EXPECT_EQ(parseNumber("-.5"), -0.5);
  EXPECT_EQ(parseNumber("5."), 5);
  EXPECT_EQ(parseNumber("1e3"), 1000);
  EXPECT_EQ(parseNumber("1e400"), infinity);
  EXPECT_EQ(parseNumber("-1e400"), -infinity);
  EXPECT_EQ(parseNumber("1e-400"), 0);
  EXPECT_EQ(parseNumber("1e99999999999999999999"), infinity);
}

TEST(NumberTextTest, TextsWithOtherCharactersAreNotNumbers) {
  for (const char* text :
       {"",    " ",    " 750",  "750 ",    "1_000",   "1,5",         "1.5.2", "--5",
        "+-5", "-+5",  ".",     "e3",      "1e",      "1e+",         "-",     "abc",
        "12a", "inf ", "infin", "nan(",    "nan(1",   "nan(!)",      "0x",    "0x.",
        "0xg", "0x1p", "0x1p+", "0x1p1.5", "0x1.2.3", "\xEF\xBC\x95"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
}

TEST(NumberTextTest, HexadecimalNumbersAreRead) {
  EXPECT_EQ(parseNumber("0x10"), 16);
  EXPECT_EQ(parseNumber("0X1P3"), 8);
  EXPECT_EQ(parseNumber("-0x1.8p1"), -3);
  EXPECT_EQ(parseNumber("0x.8"), 0.5);
  EXPECT_EQ(parseNumber("0x1."), 1);
  EXPECT_EQ(parseNumber("0x0p99999"), 0);
}

TEST(NumberTextTest, HexadecimalNumbersAreRoundedOnce) {
  EXPECT_EQ(parseNumber("0x1.fffffffffffff8p0"), 2);  // a tie goes to even
  EXPECT_EQ(parseNumber("0x1.00000000000008p0"), 1);  // here downward
  EXPECT_EQ(parseNumber("0x1.000000000000080000000000001p0"), 0x1.0000000000001p0);
  EXPECT_EQ(parseNumber("0x1000000000000080000000000001p-108"), 0x1.0000000000001p0);
  EXPECT_EQ(parseNumber("0x1p-1074"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(parseNumber("0x1p-1075"), 0);  // a tie goes to even
  EXPECT_EQ(parseNumber("0x1.0000000000001p-1075"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(parseNumber("0x0.fffffffffffffffp-1022"), std::numeric_limits<double>::min());
  EXPECT_EQ(parseNumber("0x1.fffffffffffffp1023"), std::numeric_limits<double>::max());
  EXPECT_EQ(parseNumber("0x1.fffffffffffff8p1023"), infinity);
  EXPECT_EQ(parseNumber("0x1p99999999999999999999"), infinity);
}

TEST(NumberTextTest, InfinityAndNotANumberAreReadInAnyLetterCase) {
  EXPECT_EQ(parseNumber("inf"), infinity);
  EXPECT_EQ(parseNumber("-InFiNiTy"), -infinity);
  for (const char* text : {"nan", "NaN", "-nan", "nan()", "nan(123)", "nan(xyz)"}) {
    ASSERT_TRUE(parseNumber(text)) << text;
    EXPECT_TRUE(std::isnan(*parseNumber(text))) << text;
  }
}

TEST(NumberTextTest, NulEndsTheText) {
  EXPECT_EQ(parseNumber(std::string_view("12\0x", 4)), 12);
  EXPECT_EQ(parseNumber(std::string_view("\0"
                                         "12",
                                         3)),
            std::nullopt);
}

TEST(NumberTextTest, EveryFormReadsBackToTheSameBits) {
  std::mt19937_64 engine{7};
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = i % 4 == 0 ? engine() & 0x800F'FFFF'FFFF'FFFF : engine();
    const double value = std::bit_cast<double>(bits);
    if (!std::isfinite(value)) continue;
    const std::string json = *jsonNumber(value);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(*parseDecimal(json)), bits) << json;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(*parseNumber(plainNumber(value))), bits) << json;
  }
}

}  // namespace
}  // namespace vellora
