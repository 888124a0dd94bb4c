#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

class PlayerOnTheDesk : public Desk {
 protected:
  bool offers(const std::string& label) const {
    const auto seen = seenPlayer();
    return seen && seen->lyricsSwitch.text == label;
  }
  bool lyricsAreThere() const {
    const auto seen = seenPlayer();
    return seen && !seen->rows.empty();
  }
  void pressLyricsSwitch() const {
    const auto seen = seenPlayer();
    ASSERT_TRUE(seen);
    const Rect& button = seen->lyricsSwitch.frame;
    outputOf({"xdotool", "mousemove", std::to_string(static_cast<int>(button.midX())),
              std::to_string(static_cast<int>(button.midY())), "click", "1"});
  }
};

TEST_F(PlayerOnTheDesk, TheLyricsSwitchSaysWhatAPressDoes) {
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--paused"}));
  EXPECT_TRUE(waitFor([&] { return offers("Hide lyrics"); }));
  ASSERT_NO_FATAL_FAILURE(pressLyricsSwitch());
  EXPECT_TRUE(waitFor([&] { return offers("Show lyrics") && !lyricsAreThere(); }));
  ASSERT_NO_FATAL_FAILURE(pressLyricsSwitch());
  EXPECT_TRUE(waitFor([&] { return offers("Hide lyrics") && lyricsAreThere(); }));
  outputOf({"xdotool", "key", "l"});
  EXPECT_TRUE(waitFor([&] { return offers("Show lyrics") && !lyricsAreThere(); }));
}

}  // namespace
}  // namespace vellora::e2e
