#include <algorithm>

#include "support/reading_onlooker.h"
#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

using What = ReadingOnlooker::What;
class StepsOnWayland : public WaylandDesk {
 protected:
  void followWithALog() {
    // A player that has nowhere to make a bus of its own is asked over the one that is watched.
    environment["XDG_RUNTIME_DIR"] = "/nowhere";
    ASSERT_NO_FATAL_FAILURE(startPlayerAt(usualFrame));
    environment.erase("XDG_RUNTIME_DIR");
    keepSnapshot(snapshotOfPlayer());
    environment["WAYLAND_DEBUG"] = "client";
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
    std::string problem;
    onlooker = ReadingOnlooker::watch(overlay->pid(), exchange / "snapshot.json", problem);
    ASSERT_TRUE(onlooker) << problem;
  }
  std::ptrdiff_t ticks() const {
    return std::ranges::count(onlooker->seen(), What::asked, &ReadingOnlooker::Event::what);
  }
  std::string log() const { return folder / "overlay.log"; }

  std::unique_ptr<ReadingOnlooker> onlooker;
};

TEST_F(StepsOnWayland, AreAllThatIsSent) {
  constexpr std::ptrdiff_t longEnough = 20;  // ticks: what comes once a second comes twice
  ASSERT_NO_FATAL_FAILURE(followWithALog());
  std::size_t sent = requestsIn(log());
  std::ptrdiff_t from = ticks();
  EXPECT_TRUE(waitFor([&] {
    onlooker->look(100);
    const std::size_t now = requestsIn(log());
    if (std::exchange(sent, now) != now) from = ticks();
    return ticks() - from >= longEnough;
  })) << "requests while nothing changed: "
      << sent;
  EXPECT_GT(sent, 0U);
}

}  // namespace
}  // namespace vellora::e2e
