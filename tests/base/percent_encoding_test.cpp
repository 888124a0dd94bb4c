#include "base/percent_encoding.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(PercentEncodingTest, QueryCharactersStayAndAllOthersBecomeUpperCaseEscapes) {
  constexpr std::string_view kept =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/?";
  EXPECT_EQ(percentEncodedForQuery(kept), kept);
  EXPECT_EQ(percentEncodedForQuery(" \"#%<>[\\]^`{|}"),
            "%20%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D");
  EXPECT_EQ(percentEncodedForQuery(std::string_view("\0\x7F\n", 3)), "%00%7F%0A");
  EXPECT_EQ(percentEncodedForQuery("\u00E9\U0001F3B5"), "%C3%A9%F0%9F%8E%B5");
  EXPECT_EQ(percentEncodedForQuery("%20"), "%2520");
}

TEST(PercentEncodingTest, EscapesAreDecodedInEitherLetterCase) {
  EXPECT_EQ(percentDecoded("a%2Fb%2f+%C3%a9"), "a/b/+\u00E9");
  EXPECT_EQ(percentDecoded(""), "");
  EXPECT_EQ(percentDecoded("%00"), std::string(1, '\0'));
}

TEST(PercentEncodingTest, BrokenEscapesAndOtherBytesThanUtf8GiveNothing) {
  for (const char* text : {"%", "%4", "%4g", "%g4", "a%", "%FF", "%C3", "%ED%A0%80", "\xFF"}) {
    EXPECT_EQ(percentDecoded(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace vellora
