#include "feeder/feeder.h"

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

class FeederTest : public testing::Test {
 protected:
  static std::vector<Song> songs() {
    Song first;
    first.title = "Première";
    first.artist = "Traditional";
    first.lines = {{1, "une", "one"}, {2, "♪", std::nullopt}};
    Song second;
    second.title = "Second";
    second.artist = "Somebody";
    second.lines = {{1, "zwei", "two"}};
    return {first, second};
  }
  NowPlayingTrack playing(const std::string& title, const std::string& artist) const {
    return NowPlayingTrack(now, title, artist, "an album", 3, true);
  }

  double now = 1'700'000'000;
  Feeder feeder{songs(), {30, -4}};
};

TEST_F(FeederTest, AsksForNewsAtOnceAndSwitchesTheOverlayOff) {
  const auto step = feeder.step(now, std::nullopt);
  ASSERT_TRUE(step.sync);
  EXPECT_EQ(step.sync->updatedAt, now);
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
  EXPECT_FALSE(step.snapshot->isUsable(now));
  EXPECT_TRUE(step.snapshot->lines.empty());
  EXPECT_EQ(step.news, "no song of the library plays");
}

TEST_F(FeederTest, GivesTheLinesOfTheSongThatPlays) {
  const auto step = feeder.step(now, playing("Première", "Traditional"));
  ASSERT_TRUE(step.snapshot);
  EXPECT_TRUE(step.snapshot->isUsable(now));
  EXPECT_EQ(step.snapshot->musicTitle, "Première");
  EXPECT_EQ(step.snapshot->musicArtist, "Traditional");
  EXPECT_EQ(step.snapshot->fontSize, 30);
  EXPECT_EQ(step.snapshot->verticalOffset, -4);
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"une", "one"}, {"♪", ""}}));
  EXPECT_EQ(step.news, "Première — Traditional: 2 lines, 1 translated");
}

TEST_F(FeederTest, KnowsATitleInItsOtherCanonicalForm) {
  const auto step = feeder.step(now, playing("Premie\xCC\x80re", "Traditional"));
  ASSERT_TRUE(step.snapshot);
  EXPECT_TRUE(step.snapshot->enabled);
}

TEST_F(FeederTest, TakesTitleAndArtistTogether) {
  EXPECT_FALSE(feeder.step(now, playing("Première", "Somebody")).snapshot->enabled);
  EXPECT_FALSE(feeder.step(now + 2, playing("première", "Traditional")).snapshot->enabled);
}

TEST_F(FeederTest, SaysNothingWhileNothingChanges) {
  feeder.step(now, playing("Second", "Somebody"));
  now += 0.2;
  const auto step = feeder.step(now, playing("Second", "Somebody"));
  EXPECT_FALSE(step.sync);
  EXPECT_FALSE(step.snapshot);
  EXPECT_FALSE(step.news);
}

TEST_F(FeederTest, RenewsTheSnapshotEverySecondAndAHalf) {
  feeder.step(now, playing("Second", "Somebody"));
  now += 1.4;
  EXPECT_FALSE(feeder.step(now, playing("Second", "Somebody")).snapshot);
  now += 0.1;
  const auto step = feeder.step(now, playing("Second", "Somebody"));
  ASSERT_TRUE(step.snapshot);
  EXPECT_EQ(step.snapshot->updatedAt, now);
  EXPECT_FALSE(step.news);
}

TEST_F(FeederTest, RenewsTheRequestEveryFiveSeconds) {
  feeder.step(now, std::nullopt);
  EXPECT_FALSE(feeder.step(now + 4.9, std::nullopt).sync);
  const auto step = feeder.step(now + 5, std::nullopt);
  ASSERT_TRUE(step.sync);
  EXPECT_TRUE(step.sync->isActive(now + 5));
}

TEST_F(FeederTest, FollowsAChangeOfSongAtOnce) {
  feeder.step(now, playing("Première", "Traditional"));
  now += 0.2;
  const auto step = feeder.step(now, playing("Second", "Somebody"));
  ASSERT_TRUE(step.snapshot);
  EXPECT_EQ(step.snapshot->musicTitle, "Second");
  EXPECT_EQ(step.news, "Second — Somebody: 1 lines, 1 translated");
}

TEST_F(FeederTest, SwitchesOffWhenTheNewsHaveGrownStale) {
  const auto track = playing("Second", "Somebody");
  feeder.step(now, track);
  EXPECT_TRUE(feeder.step(now + 7.9, track).snapshot->enabled);
  const auto step = feeder.step(now + 8, track);
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
  EXPECT_EQ(step.news, "no song of the library plays");
}

TEST_F(FeederTest, RenewsBothWhenTheClockIsSetBack) {
  feeder.step(now, std::nullopt);
  const auto step = feeder.step(now - 3600, std::nullopt);
  EXPECT_TRUE(step.sync);
  EXPECT_TRUE(step.snapshot);
}

}  // namespace
}  // namespace vellora::demo
