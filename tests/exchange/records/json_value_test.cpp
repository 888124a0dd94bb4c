#include "exchange/records/json_value.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace vellora {
namespace {

std::optional<std::int64_t> integer(const std::string& literal) {
  JsonValue json{JsonNumber{literal}};
  std::int64_t field = 0;
  return readJson(json, field) ? std::optional(field) : std::nullopt;
}

std::optional<double> number(const std::string& literal) {
  JsonValue json{JsonNumber{literal}};
  double field = 0;
  return readJson(json, field) ? std::optional(field) : std::nullopt;
}

TEST(JsonValueTest, IntegerFieldTakesEveryLiteralThatSpellsAnInteger) {
  EXPECT_EQ(integer("1"), 1);
  EXPECT_EQ(integer("1.0"), 1);
  EXPECT_EQ(integer("1e0"), 1);
  EXPECT_EQ(integer("-0"), 0);
  EXPECT_EQ(integer("-0.0"), 0);
  EXPECT_EQ(integer("12e-0"), 12);
  EXPECT_EQ(integer("1200E-2"), 12);
  EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(integer("1e18"), 1'000'000'000'000'000'000);
}

TEST(JsonValueTest, LargeIntegersWithAPointKeepTheirDigits) {
  EXPECT_EQ(integer("9007199254740993.0"), 9'007'199'254'740'993);
  EXPECT_EQ(integer("9.007199254740993e15"), 9'007'199'254'740'993);
  EXPECT_EQ(integer("-90071992547409930e-1"), -9'007'199'254'740'993);
}

TEST(JsonValueTest, IntegerFieldRefusesWhatItCannotHold) {
  EXPECT_EQ(integer("1.5"), std::nullopt);
  EXPECT_EQ(integer("0.1"), std::nullopt);
  EXPECT_EQ(integer("9223372036854775808"), std::nullopt);
  EXPECT_EQ(integer("-9223372036854775809"), std::nullopt);
  EXPECT_EQ(integer("9223372036854775808.0"), std::nullopt);
  EXPECT_EQ(integer("1e19"), std::nullopt);
  EXPECT_EQ(integer("1e300"), std::nullopt);
}

TEST(JsonValueTest, FloatingPointFieldTakesIntegersAndKeepsTheSignOfZero) {
  EXPECT_EQ(number("5"), 5);
  EXPECT_EQ(number("18446744073709551616"), 18446744073709551616.0);
  ASSERT_TRUE(number("-0"));
  EXPECT_TRUE(std::signbit(*number("-0")));
}

TEST(JsonValueTest, FloatingPointFieldRefusesWhatIsTooLargeOrTooSmall) {
  EXPECT_EQ(number("1e400"), std::nullopt);
  EXPECT_EQ(number("-1e400"), std::nullopt);
  EXPECT_EQ(number("1e-400"), std::nullopt);
  EXPECT_EQ(number("0.0e-400"), 0);
  EXPECT_EQ(number("5e-324"), std::numeric_limits<double>::denorm_min());
}

TEST(JsonValueTest, NothingIsConvertedBetweenTypes) {
  JsonValue text{std::string("1")};
  JsonValue flag{true};
  JsonValue one{JsonNumber{"1"}};
  JsonValue null{nullptr};
  for (JsonValue* json : {&text, &flag, &null}) {
    std::int64_t integerField = 0;
    double numberField = 0;
    EXPECT_FALSE(readJson(*json, integerField));
    EXPECT_FALSE(readJson(*json, numberField));
  }
  for (JsonValue* json : {&text, &one, &null}) {
    bool flagField = false;
    EXPECT_FALSE(readJson(*json, flagField));
  }
  for (JsonValue* json : {&flag, &one, &null}) {
    std::string textField;
    EXPECT_FALSE(readJson(*json, textField));
  }
}

TEST(JsonValueTest, BytesThatAreNotUtf8AreWrittenAsReplacementCharacters) {
  std::string json;
  EXPECT_TRUE(appendJson(json, std::string_view("a\xFF/b")));
  EXPECT_EQ(json, "\"a\uFFFD\\/b\"");
}

}  // namespace
}  // namespace vellora
