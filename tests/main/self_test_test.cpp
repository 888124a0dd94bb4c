#include "main/self_test.h"

#include <cmath>
#include <csignal>
#include <functional>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "main/passing_platform.h"
#include "support/file_size_limit.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::KilledBySignal;
using testing::Pair;

PixelSize run(Platform& platform, const std::optional<std::string>& picture = std::nullopt) {
  std::ostringstream output;
  return runSelfTest(platform, picture, output);
}

TEST(SelfTestTest, ComposesWithoutShowingThePanelThenDrawsItsOwnCaptions) {
  PassingPlatform platform;
  run(platform);
  EXPECT_THAT(platform.log,
              ElementsAre("configure panel", "measure Hallo Welt", "panel frame", "view frame",
                          "needs display", "needs display", "needs display", "needs display",
                          "make bitmap", "cache display",  // three captions, the middle one sharp
                          "paint The previous line gently fades away", "blur sharp 1",
                          "draw blur of sharp 1", "paint The current translation stays clear",
                          "draw sharp 2", "paint The next line blends into the background",
                          "blur sharp 3", "draw blur of sharp 3"));
}

TEST(SelfTestTest, ComposesTheTranslationOfTheRowInTheFixedWindow) {
  PassingPlatform platform;
  run(platform);
  ASSERT_EQ(platform.measurements.size(), 1u);
  EXPECT_DOUBLE_EQ(platform.measurements[0].fontSize, 20.8);
  EXPECT_EQ(platform.measurements[0].width, 516);  // 600 + 580 − 620 − 44
  EXPECT_EQ(platform.viewFrame, (Rect{0, 0, 1200, 800}));
}

TEST(SelfTestTest, DrawsThreeCaptionsOfDifferentSoftness) {
  PassingPlatform platform;
  run(platform);
  const auto& drawings = platform.drawings;
  ASSERT_EQ(drawings.size(), 3u);
  EXPECT_EQ(drawings[0].text, "The previous line gently fades away");
  EXPECT_EQ(drawings[1].text, "The current translation stays clear");
  EXPECT_EQ(drawings[2].text, "The next line blends into the background");
  for (const CaptionDrawing& drawing : drawings) EXPECT_EQ(drawing.fontSize, 24);
  EXPECT_THAT(platform.destinations,
              ElementsAre(Rect{60, 110, 700, 64}, Rect{60, 200, 700, 64}, Rect{60, 290, 700, 64}));
  ASSERT_EQ(platform.radii.size(), 2u);
  EXPECT_DOUBLE_EQ(platform.radii[0], 2.6);
  EXPECT_DOUBLE_EQ(platform.radii[1], 1.95);
}

TEST(SelfTestTest, LooksAtThePixelsOfItsPointsInTheirOrder) {
  PassingPlatform platform;
  run(platform);
  EXPECT_THAT(platform.asked, ElementsAre(Pair(0, 0), Pair(700, 230), Pair(700, 140),
                                          Pair(700, 117), Pair(700, 207)));
}

TEST(SelfTestTest, OnADisplayOfScaleTwoLooksAtPixelsTwiceAsFarOut) {
  PassingPlatform platform(2);
  run(platform);
  EXPECT_THAT(platform.asked, ElementsAre(Pair(0, 0), Pair(1400, 460), Pair(1400, 280),
                                          Pair(1400, 234), Pair(1400, 414)));
}

TEST(SelfTestTest, GivesTheSizeOfTheBitmapInPixels) {
  PassingPlatform platform(2);
  const PixelSize size = run(platform);
  EXPECT_EQ(size.width, 2400);
  EXPECT_EQ(size.height, 1600);
}

TEST(SelfTestTest, BothEndsOfARangeAreInIt) {
  const std::vector<std::pair<double, double>> alphas = {{230, 0.2},  {230, 0.3},    {140, 0.1},
                                                         {140, 0.18}, {117, 5e-324}, {117, 1}};
  for (const auto& [y, alpha] : alphas) {
    PassingPlatform platform;
    platform.set(700, y, alpha);
    EXPECT_EQ(run(platform).width, 1200);
  }
}

struct Fault {
  const char* name;
  std::function<void(PassingPlatform&)> make;
};

TEST(SelfTestTest, EachFailedCheckEndsTheProcessWithoutAWordAndWithoutAPicture) {
  const std::vector<Fault> faults = {
      {"mouse events", [](auto& p) { p.mouseIgnored = false; }},
      {"opaque", [](auto& p) { p.opaque = true; }},
      {"no width", [](auto& p) { p.putBitmap(0, 800); }},
      {"no height", [](auto& p) { p.putBitmap(1200, 0); }},
      {"low", [](auto& p) { p.putBitmap(1200, 100); }},
      {"background", [](auto& p) { p.set(0, 0, 1.0 / 255); }},
      {"sharp plate faint", [](auto& p) { p.set(700, 230, std::nextafter(0.2, 0)); }},
      {"sharp plate strong", [](auto& p) { p.set(700, 230, std::nextafter(0.3, 1)); }},
      {"soft plate faint", [](auto& p) { p.set(700, 140, std::nextafter(0.1, 0)); }},
      {"soft plate strong", [](auto& p) { p.set(700, 140, std::nextafter(0.18, 1)); }},
      {"no blur", [](auto& p) { p.set(700, 117, 0); }},
      {"spill", [](auto& p) { p.set(700, 207, 1.0 / 255); }},
  };
  TemporaryFolder folder;
  const std::string picture = (folder / "picture.png").string();
  for (const Fault& fault : faults) {
    SCOPED_TRACE(fault.name);
    PassingPlatform platform;
    fault.make(platform);
    EXPECT_EXIT(run(platform, picture), KilledBySignal(SIGABRT), testing::Eq(std::string()));
    EXPECT_FALSE(std::filesystem::exists(picture));
  }
}

// A bitmap that has every alpha that is asked for, in the order of the questions.
void putWillingBitmap(PassingPlatform& platform, std::int64_t width, std::int64_t height) {
  platform.putBitmap(width, height);
  platform.bitmap->boundless = true;
  platform.bitmap->alphaOf = [question = 0](auto, auto) mutable {
    constexpr double alphas[] = {0, 0.26, 0.14, 0.02, 0};
    return alphas[question++];
  };
}

TEST(SelfTestTest, ABitmapWithoutWidthOrHeightEndsTheProcessWhateverItsPixels) {
  const std::vector<std::pair<std::int64_t, std::int64_t>> sizes = {
      {0, 800}, {1200, 0}, {-1, 800}, {1200, -1}};
  for (const auto& [width, height] : sizes) {
    SCOPED_TRACE(testing::Message() << width << " × " << height);
    PassingPlatform platform;
    putWillingBitmap(platform, width, height);
    EXPECT_EXIT(run(platform), KilledBySignal(SIGABRT), testing::Eq(std::string()));
  }
  PassingPlatform platform;
  putWillingBitmap(platform, 1, 1);
  EXPECT_EQ(run(platform).width, 1);
}

TEST(SelfTestTest, AnyOtherNumberOfComposedCaptionsThanOneEndsTheProcess) {
  PassingPlatform platform;
  std::ostringstream output;
  const auto controller = std::make_shared<OverlayDelegate>(std::nullopt, platform, output);
  EXPECT_EXIT(checkComposition(*controller), KilledBySignal(SIGABRT), testing::Eq(std::string()));
  controller->canvas.setCaptions({Caption()});
  checkComposition(*controller);
  controller->canvas.setCaptions({Caption(), Caption()});
  EXPECT_EXIT(checkComposition(*controller), KilledBySignal(SIGABRT), testing::Eq(std::string()));
}

TEST(SelfTestTest, WithoutABitmapTheProcessEndsWithALine) {
  PassingPlatform platform;
  platform.viewHasBitmaps = false;
  EXPECT_EXIT(run(platform), KilledBySignal(SIGABRT),
              "Fatal error: Could not allocate native rendering surface\n");
}

TEST(SelfTestTest, TheChecksOfThePanelComeBeforeTheBitmap) {
  PassingPlatform platform;
  platform.viewHasBitmaps = false;
  platform.opaque = true;
  EXPECT_EXIT(run(platform), KilledBySignal(SIGABRT), testing::Eq(std::string()));
}

TEST(SelfTestTest, ThePictureIsWrittenIntoTheFileThatIsThere) {
  TemporaryFolder folder;
  const auto picture = folder / "picture.png";
  writeText(picture, "something longer than a picture");
  std::filesystem::create_hard_link(picture, folder / "same");
  PassingPlatform platform;
  platform.bitmap->encoded = std::vector<std::uint8_t>{'P', 'N', 0, 'G'};
  run(platform, picture.string());
  EXPECT_EQ(readText(folder / "same"), std::string("PN\0G", 4));
  EXPECT_THAT(folder.names(), ElementsAre("picture.png", "same"));
}

TEST(SelfTestTest, APictureThatCannotBeEncodedIsLeftOut) {
  TemporaryFolder folder;
  PassingPlatform platform;
  platform.bitmap->encoded = std::nullopt;
  EXPECT_EQ(run(platform, (folder / "picture.png").string()).width, 1200);
  EXPECT_THAT(folder.names(), testing::IsEmpty());
}

TEST(SelfTestTest, APictureThatCannotBeWrittenEndsTheProcessWithALine) {
  TemporaryFolder folder;
  for (const auto& picture : {folder / "missing" / "picture.png", folder.path()}) {
    PassingPlatform platform;
    EXPECT_EXIT(run(platform, picture.string()), KilledBySignal(SIGABRT),
                "Fatal error: Could not write")
        << picture;
  }
}

TEST(SelfTestTest, APictureThatFillsTheDiskEndsTheProcessWithALine) {
  TemporaryFolder folder;
  PassingPlatform platform;
  platform.bitmap->encoded = std::vector<std::uint8_t>(900);
  const auto runOnAFullDisk = [&] {
    const FileSizeLimit limit(400);
    run(platform, (folder / "picture.png").string());
  };
  EXPECT_EXIT(runOnAFullDisk(), KilledBySignal(SIGABRT), "Fatal error: Could not write");
}

TEST(AlphaAtTest, PixelNumbersAreCutTowardZero) {
  FakeBitmap bitmap(1800, 1200);
  std::vector<std::pair<std::int64_t, std::int64_t>> asked;
  bitmap.alphaOf = [&asked](std::int64_t column, std::int64_t row) {
    asked.emplace_back(column, row);
    return 0.5;
  };
  EXPECT_EQ(alphaAt(bitmap, 1200, {700, 117}), 0.5);
  EXPECT_EQ(alphaAt(bitmap, 1200, {-0.6, -0.6}), 0.5);
  EXPECT_THAT(asked, ElementsAre(Pair(1050, 175), Pair(0, 0)));
}

TEST(AlphaAtTest, OutsideTheBitmapIsMinusOne) {
  const FakeBitmap bitmap(10, 10);
  EXPECT_EQ(alphaAt(bitmap, 10, {10, 0}), -1);
  EXPECT_EQ(alphaAt(bitmap, 10, {0, 10}), -1);
  EXPECT_EQ(alphaAt(bitmap, 10, {-1, 0}), -1);
  EXPECT_EQ(alphaAt(bitmap, 10, {-9223372036854775808.0, 0}), -1);
}

TEST(AlphaAtTest, APointThatIsNoPixelNumberEndsTheProcess) {
  const FakeBitmap bitmap(10, 10);
  EXPECT_EXIT(alphaAt(bitmap, 0, {0, 0}), KilledBySignal(SIGABRT), "Fatal error: ");
  EXPECT_EXIT(alphaAt(bitmap, 0, {1, 1}), KilledBySignal(SIGABRT), "Fatal error: ");
  EXPECT_EXIT(alphaAt(bitmap, 10, {0, 9223372036854775808.0}), KilledBySignal(SIGABRT),
              "Fatal error: ");
}

}  // namespace
}  // namespace vellora
