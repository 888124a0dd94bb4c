#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

// Two outputs of 1280 x 800 side by side.
class TwoOutputs : public WaylandDesk {};

constexpr Rect onTheSecond{1400, 40, 1000, 700};

TEST_F(TwoOutputs, CaptionsStandOnTheSecond) { ASSERT_NO_FATAL_FAILURE(follow(onTheSecond)); }

TEST_F(TwoOutputs, CaptionsFollowThePlayerToAnOutputOfAnotherScale) {
  compositor->setScale(0, 2);
  ASSERT_NO_FATAL_FAILURE(follow({40, 20, 580, 370}));
  // On the second output, wherever the compositor lets that begin now.
  const Rect other{1290, 40, 600, 700};
  compositor->place(player->pid(), other);
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()) == other; }));
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAnew());
  EXPECT_TRUE(waitFor([&] { return captionsRight(); }));
}

}  // namespace
}  // namespace vellora::e2e
