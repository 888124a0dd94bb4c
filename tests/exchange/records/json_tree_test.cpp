#include "exchange/records/json_tree.h"

#include <cstddef>
#include <optional>
#include <string>
#include <variant>

#include <gtest/gtest.h>

namespace vellora {
namespace {

std::string nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

std::string numberText(const std::string& json) {
  std::optional<JsonValue> tree = parseJson(json);
  if (!tree) return "ill-formed";
  JsonValue& first = std::get<JsonArray>(tree->value).front();
  return std::get<JsonNumber>(first.value).text;
}

TEST(JsonTreeTest, NumbersKeepTheTextOfTheFile) {
  for (const char* number : {"0", "-0", "1", "-12", "1.0", "1e0", "1E+5", "0.1e-7",
                             "18446744073709551616", "-9223372036854775809", "1.50"}) {
    EXPECT_EQ(numberText("[" + std::string(number) + "]"), number);
    EXPECT_EQ(numberText("[ " + std::string(number) + " ]"), number);
    EXPECT_EQ(numberText("[" + std::string(number) + ",2]"), number);
  }
}

TEST(JsonTreeTest, ContainersMayNest512Deep) {
  EXPECT_TRUE(parseJson(nested(deepestJson)));
  EXPECT_FALSE(parseJson(nested(deepestJson + 1)));
  EXPECT_FALSE(parseJson(std::string(1'000'000, '[')));
  std::string objects;
  for (int i = 0; i < 512; ++i) objects += "{\"a\":";
  EXPECT_TRUE(parseJson(objects + "1" + std::string(512, '}')));
  EXPECT_FALSE(parseJson("[" + objects + "1" + std::string(512, '}') + "]"));
}

TEST(JsonTreeTest, DepthIsNotTheNumberOfContainers) {
  std::string siblings = "[";
  for (int i = 0; i < 2000; ++i) siblings += "[],";
  EXPECT_TRUE(parseJson(siblings + "[]]"));
}

TEST(JsonTreeTest, MembersStayInOrderAndTheFirstOfAKeyIsFound) {
  std::optional<JsonValue> tree = parseJson(R"({"b":1,"a":{"c":[true]},"b":"x","":null})");
  ASSERT_TRUE(tree);
  auto& object = std::get<JsonObject>(tree->value);
  ASSERT_EQ(object.members.size(), 4U);
  EXPECT_EQ(std::get<JsonNumber>(object.find("b")->value).text, "1");
  EXPECT_TRUE(std::holds_alternative<JsonObject>(object.find("a")->value));
  EXPECT_TRUE(std::holds_alternative<std::nullptr_t>(object.find("")->value));
  EXPECT_EQ(object.find("B"), nullptr);
}

TEST(JsonTreeTest, ByteOrderMarkIsSkipped) {
  EXPECT_TRUE(parseJson("\xEF\xBB\xBF[1]"));
  EXPECT_FALSE(parseJson("\xEF\xBB[1]"));
}

TEST(JsonTreeTest, RawNulIsIllFormedEverywhere) {
  EXPECT_FALSE(parseJson(std::string("[1]\0", 4)));
  EXPECT_FALSE(parseJson(std::string("\0[1]", 4)));
  EXPECT_FALSE(parseJson(std::string("[\"\0\"]", 5)));
  EXPECT_TRUE(parseJson(R"(["\u0000"])"));
}

TEST(JsonTreeTest, NothingMayStandBesideTheValue) {
  for (const char* text : {"", " ", "[1] x", "[1][1]", "[1],", "[1,]", "{\"a\":1,}", "// c\n[1]"}) {
    EXPECT_FALSE(parseJson(text)) << text;
  }
}

}  // namespace
}  // namespace vellora
