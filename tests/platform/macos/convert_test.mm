#import "platform/macos/convert.h"

#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(ConvertTest, TextsComeBackAsTheyWere) {
  for (const std::string& text :
       {std::string(), std::string("plain"), std::string("a\0b", 3), std::string("歌詞"),
        std::string("e\u0301"), std::string("💚 🇫🇷"), std::string("\uFEFFbegin")}) {
    EXPECT_EQ(fromNSString(toNSString(text)), text);
  }
  EXPECT_EQ(toNSString("💚").length, 2u);
  EXPECT_EQ(toNSString("\uFEFFa").length, 2u);
}

TEST(ConvertTest, WhatIsNoTextBecomesReplacementCharacters) {
  EXPECT_EQ(fromNSString(toNSString("a\xFFz")), "a\uFFFDz");
  const unichar lone[] = {'a', 0xD83D, 'z'};
  EXPECT_EQ(fromNSString([NSString stringWithCharacters:lone length:3]), "a\uFFFDz");
  EXPECT_EQ(fromNSString(nil), "");
}

TEST(ConvertTest, RectanglesKeepTheirNumbers) {
  const Rect rect{-1.5, 2.25, 300, 0.1};
  EXPECT_EQ(fromNSRect(toNSRect(rect)), rect);
  EXPECT_EQ(toNSRect(rect).origin.y, 2.25);
}

TEST(ConvertTest, OnlyFiniteRectanglesArePlaceable) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(isPlaceable({-5, 1e9, 0, 0}));
  EXPECT_FALSE(isPlaceable({infinity, 0, 1, 1}));
  EXPECT_FALSE(isPlaceable({0, std::numeric_limits<double>::quiet_NaN(), 1, 1}));
  EXPECT_FALSE(isPlaceable({0, 0, -infinity, 1}));
  EXPECT_FALSE(isPlaceable({0, 0, 1, infinity}));
}

TEST(ConvertTest, WhatReachesBeyondWholeNumbersOf32BitsIsNotPlaceable) {
  EXPECT_TRUE(isPlaceable({-2147483648.0, -2147483648.0, 4294967295.0, 4294967295.0}));
  EXPECT_FALSE(isPlaceable({-2147483649.0, 0, 1, 1}));
  EXPECT_FALSE(isPlaceable({0, 2147483647.0, 1, 1}));
  EXPECT_FALSE(isPlaceable({0, 0, 1e10, 1}));
}

TEST(ConvertTest, ColorsAreCalibrated) {
  NSColor* const grey = toNSColor({0.32, 0.32, 0.32, 0.26});
  EXPECT_EQ(grey.colorSpace.colorSpaceModel, NSColorSpaceModelGray);
  EXPECT_NEAR(grey.whiteComponent, 0.32, 1e-9);
  EXPECT_NEAR(grey.alphaComponent, 0.26, 1e-9);
  NSColor* const mint = toNSColor({0.82, 1.0, 0.92, 0.6});
  EXPECT_EQ(mint.colorSpace, NSColorSpace.genericRGBColorSpace);
  EXPECT_NEAR(mint.redComponent, 0.82, 1e-9);
  EXPECT_NEAR(mint.greenComponent, 1.0, 1e-9);
  EXPECT_NEAR(mint.blueComponent, 0.92, 1e-9);
  EXPECT_NEAR(mint.alphaComponent, 0.6, 1e-9);
}

}  // namespace
}  // namespace vellora
