#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

class WitnessOnTheDesk : public Desk {
 protected:
  void follow(const std::string& geometry) {
    ASSERT_NO_FATAL_FAILURE(
        startPlayer({"--song", "1", "--paused", "--position", "12", "--geometry", geometry}));
    keepSnapshot(snapshotOfPlayer());
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
  }
  // By the window manager, which lets a pager put a window anywhere.
  void movePlayer(int x, int y) {
    outputOf({"wmctrl", "-x", "-r", "com.apple.Music", "-e",
              "0," + std::to_string(x) + "," + std::to_string(y) + ",-1,-1"});
  }
};

TEST_F(WitnessOnTheDesk, CountsCaptionsBeyondTheScreenApart) {
  ASSERT_NO_FATAL_FAILURE(follow("1000x700"));
  const auto before = look();
  ASSERT_TRUE(before);
  ASSERT_EQ(before->beyondScreen, 0U);
  const struct { int x, y; } places[] = {{140, 400}, {140, -400}, {1180, 40}};
  for (const auto& place : places) {
    SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
    movePlayer(place.x, place.y);
    ASSERT_TRUE(waitFor([&] {
      const auto seen = seenPlayer();
      return seen && seen->window.minX() == place.x && seen->window.minY() == place.y;
    }));
    std::optional<witness::CaptionsVerdict> verdict;
    EXPECT_TRUE(waitFor([&] {
      verdict = look();
      return verdict && verdict->beyondScreen > 0 &&
             verdict->captions + verdict->beyondScreen == before->captions;
    })) << "captions "
        << (verdict ? verdict->captions : 0) << ", beyond the screen "
        << (verdict ? verdict->beyondScreen : 0);
  }
}

TEST_F(WitnessOnTheDesk, SeesCaptionsOverAPlayerOfScaleTwo) {
  environment["GDK_SCALE"] = "2";
  ASSERT_NO_FATAL_FAILURE(follow("620x380"));
  EXPECT_GE(look()->captions, 1U);
  dropSnapshot();
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

}  // namespace
}  // namespace vellora::e2e
