#include "witness/captions_seen.h"

#include <gtest/gtest.h>

namespace vellora::witness {
namespace {

constexpr int screenWidth = 400;  // pixels
constexpr int screenHeight = 300;

Picture emptyScreen() {
  return {
      screenWidth, screenHeight,
      std::vector<std::uint32_t>(static_cast<std::size_t>(screenWidth * screenHeight), 0x202020)};
}

void paint(Picture& picture, const Rect& area) {
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      if (!area.contains(Point{double(x), double(y)})) continue;
      picture.pixels[static_cast<std::size_t>(y * picture.width + x)] = 0x404040;
    }
  }
}

// A player of 300 x 240 points at `place`, `scale` pixels each, with rows 20 points high whose tops
// are 100 points apart, each with a translation. Captions take the place of one line of 12 points:
// from 2 points below the row on, 25 points high.
struct Scene {
  explicit Scene(Point place, double scale = 1) : screen(emptyScreen()) {
    player.window = {place.x, place.y, 300, 240};
    player.viewport = player.window;
    for (const char* text : {"one", "two", "three"}) {
      const double top = place.y + 100 * static_cast<double>(player.rows.size());
      player.rows.push_back({text, {place.x + 10, top, 250, 20}});
      snapshot.lines.edit().push_back({text, "translated"});
    }
    snapshot.fontSize = 12;
    static_cast<Picture&>(window) = emptyScreen();
    window.frame = scaled(player.window, scale);
  }
  // As the overlay would, at that scale, under the first `count` rows.
  void drawCaptions(std::size_t count, double scale = 1) {
    for (std::size_t i = 0; i < count; ++i) {
      const Rect& row = player.rows[i].frame;
      paint(screen, scaled({row.minX() + 2, row.maxY() + 2, 266, 25}, scale));
    }
  }
  CaptionsVerdict verdict() const { return judgeCaptions(player, snapshot, screen, window); }

  SeenPlayer player;
  OverlaySnapshot snapshot;
  Picture screen;
  WindowPicture window;
};

TEST(CaptionsSeen, ACaptionUnderEachVisibleRowIsRight) {
  Scene scene({10, 10});
  EXPECT_FALSE(scene.verdict().right) << "no caption at all";
  scene.drawCaptions(1);
  EXPECT_FALSE(scene.verdict().right) << "the second row has none";
  scene.drawCaptions(2);
  const CaptionsVerdict verdict = scene.verdict();
  EXPECT_TRUE(verdict.right);
  EXPECT_EQ(verdict.captions, 2U);
  EXPECT_EQ(verdict.beyondScreen, 0U);
}

TEST(CaptionsSeen, ACaptionWithoutTranslationIsWrong) {
  Scene scene({10, 10});
  scene.drawCaptions(2);
  scene.snapshot.lines.edit()[1].translation.clear();
  const CaptionsVerdict verdict = scene.verdict();
  EXPECT_FALSE(verdict.right);
  EXPECT_TRUE(verdict.rows[0].right);
  EXPECT_FALSE(verdict.rows[1].right);
}

TEST(CaptionsSeen, ARowBelowTheScreenIsCountedApart) {
  Scene scene({10, 190});  // of the second caption's place, from 312 on, the screen shows nothing
  scene.drawCaptions(1);
  const CaptionsVerdict verdict = scene.verdict();
  EXPECT_TRUE(verdict.right);
  EXPECT_EQ(verdict.captions, 1U);
  EXPECT_EQ(verdict.beyondScreen, 1U);
  EXPECT_TRUE(verdict.rows[1].beyondScreen);
}

TEST(CaptionsSeen, APlaceOfWhichLessThanHalfIsOnTheScreenIsCountedApart) {
  EXPECT_EQ(Scene({10, 167}).verdict().beyondScreen, 1U) << "11 of 25 points";
  EXPECT_EQ(Scene({10, 165}).verdict().beyondScreen, 0U) << "13 of 25 points";
  EXPECT_EQ(Scene({10, -36}).verdict().beyondScreen, 1U) << "above, 11 of 25 points";
  EXPECT_EQ(Scene({-245, 10}).verdict().beyondScreen, 2U) << "on the left, 33 of 266 points";
  EXPECT_EQ(Scene({355, 10}).verdict().beyondScreen, 2U) << "on the right, 33 of 266 points";
  EXPECT_EQ(Scene({-200, 10}).verdict().beyondScreen, 0U) << "on the left, 78 of 266 points";
}

TEST(CaptionsSeen, NothingSeenIsNotRight) {
  Scene scene({10, 290});
  const CaptionsVerdict verdict = scene.verdict();
  EXPECT_EQ(verdict.beyondScreen, 2U);
  EXPECT_FALSE(verdict.right);
}

TEST(CaptionsSeen, APlayerScaledByTwoIsJudgedInPixels) {
  Scene scene({5, 5}, 2);
  EXPECT_EQ(pixelsPerPoint(scene.player, scene.window), 2);
  EXPECT_FALSE(scene.verdict().right);
  scene.drawCaptions(2, 1);
  EXPECT_FALSE(scene.verdict().right) << "captions at half of the place and size";
  scene.screen = emptyScreen();
  scene.drawCaptions(2, 2);
  const CaptionsVerdict verdict = scene.verdict();
  EXPECT_TRUE(verdict.right);
  EXPECT_EQ(verdict.captions, 2U);
  EXPECT_EQ(verdict.rows[0].band.minY(), 2 * (5 + 20 + 2));
}

TEST(CaptionsSeen, WhatTheWindowManagerPutsAroundTheWindowIsNoScale) {
  Scene scene({10, 10});
  scene.window.frame = {9, -14, 303, 265};
  EXPECT_EQ(pixelsPerPoint(scene.player, scene.window), 1);
  scene.player.window = {};
  EXPECT_EQ(pixelsPerPoint(scene.player, scene.window), 1) << "a player that does not say";
}

}  // namespace
}  // namespace vellora::witness
