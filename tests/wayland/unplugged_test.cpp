#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

// Two outputs of 1280 x 800 side by side, of which one can be unplugged.
class AnOutputUnplugged : public WaylandDesk {};

constexpr Rect onTheSecond{1400, 40, 1000, 700};

TEST_F(AnOutputUnplugged, TakesNoCaptionsWithIt) {
  ASSERT_NO_FATAL_FAILURE(follow(onTheSecond));
  ASSERT_TRUE(compositor->setPlugged(1, false));
  // Where the player goes then is the compositor's matter; here it is put onto the first output.
  compositor->place(player->pid(), usualFrame);
  compositor->activate(player->pid());
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()) == usualFrame; }));
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAnew());
  EXPECT_TRUE(waitFor([&] { return captionsRight(); }));
  ASSERT_TRUE(compositor->setPlugged(1, true));
  compositor->place(player->pid(), onTheSecond);
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()) == onTheSecond; }));
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAnew());
  EXPECT_TRUE(waitFor([&] { return captionsRight(); }));
}

}  // namespace
}  // namespace vellora::e2e
