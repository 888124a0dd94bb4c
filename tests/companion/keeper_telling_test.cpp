#include <memory>
#include <string>
#include <utility>

#include "companion/exchange/keeper.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

using KeepingByPlayers = SongFolder;

TEST_F(KeepingByPlayers, WhatAPlayerTellsItselfGoesIntoNoSnapshot) {
  constexpr double begin = 1'000'000;
  put("River Band - Night Drive.lrc", "[00:01.00]a\n[00:03.00]b\n");
  Keeper keeper(Library(folder, ""), CaptionSettings());
  const NowPlayingTrack track(begin, "Night Drive", "River Band", "Album", 5, true);
  auto step = keeper.step(begin, track, Keeper::TellingOne::player);
  ASSERT_NE(keeper.playing(), nullptr);
  EXPECT_TRUE(step.songChanged);
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
  EXPECT_TRUE(step.snapshot->lines.empty());
  step = keeper.step(begin + 0.1, track, Keeper::TellingOne::overlay);
  EXPECT_FALSE(step.songChanged);
  ASSERT_TRUE(step.snapshot) << "at once";
  EXPECT_TRUE(step.snapshot->enabled);
  step = keeper.step(begin + 0.2, track, Keeper::TellingOne::player);
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
}

class Telling final : public SongAddition {
 public:
  explicit Telling(std::string notice) : notice_(std::move(notice)) {}
  void begin(Song&) override {}
  void drop() override {}
  bool step(double, Song&) override { return false; }
  bool underWay() const override { return false; }
  std::string notice() const override { return notice_; }

 private:
  std::string notice_;
};

using KeepingWithAdditions = SongFolder;

TEST_F(KeepingWithAdditions, EachIsHeard) {
  Keeper keeper(Library(folder, ""), CaptionSettings());
  EXPECT_EQ(keeper.notice(), "");
  for (const char* notice : {"", "no dictionary", "", "no translator"}) {
    keeper.add(std::make_unique<Telling>(notice));
  }
  EXPECT_EQ(keeper.notice(), "no dictionary; no translator");
}

}  // namespace
}  // namespace vellora::companion
