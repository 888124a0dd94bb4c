#include <algorithm>

#include "support/reading_onlooker.h"
#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

using What = ReadingOnlooker::What;
using Events = std::vector<ReadingOnlooker::Event>;

constexpr int restInTicks = 6;

// From the places that moved to the next stretch of some ticks in which none does.
struct Glide {
  std::int64_t readFrom;  // the tick before that of the last reading to see a row move
  std::int64_t lastMove;  // when that was told
  std::int64_t end;
};

std::vector<Glide> glidesIn(const Events& events) {
  std::vector<Glide> glides;
  std::vector<std::int64_t> ticks;
  std::optional<Glide> current;
  int still = 0;
  for (const auto& [time, what] : events) {
    if (what == What::tick) {
      ticks.push_back(time);
      if (!current || ++still < restInTicks) continue;
      current->end = time;
      glides.push_back(*current);
      current.reset();
    } else if (what == What::moved && ticks.size() >= 2) {
      current = Glide{ticks[ticks.size() - 2], time, 0};
      still = 0;
    }
  }
  return glides;
}

// Whether the last commit of the glide showed what the reader saw last, with one tick at most
// having begun meanwhile.
bool isPrompt(const Glide& glide, const Events& events, const std::vector<std::int64_t>& commits) {
  std::int64_t last = 0;
  for (const std::int64_t time : commits) {
    if (time >= glide.readFrom && time < glide.end) last = time;
  }
  const auto between = std::ranges::count_if(events, [&](const auto& event) {
    return event.what == What::tick && event.microseconds > glide.lastMove &&
           event.microseconds <= last;
  });
  return last != 0 && between <= 1;
}

class StepsOnWayland : public WaylandDesk {
 protected:
  void followWithALog() {
    ASSERT_NO_FATAL_FAILURE(startPlayerAt(usualFrame));
    keepSnapshot(snapshotOfPlayer());
    environment["WAYLAND_DEBUG"] = "client";
    environment["VELLORA_DIRECT_LINK"] = "off";  // the onlooker watches the bus
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
    std::string problem;
    onlooker = ReadingOnlooker::watch(overlay->pid(), exchange / "snapshot.json", problem);
    ASSERT_TRUE(onlooker) << problem;
  }
  std::ptrdiff_t ticks() const {
    return std::ranges::count(onlooker->seen(), What::tick, &ReadingOnlooker::Event::what);
  }
  std::string log() const { return folder / "overlay.log"; }

  std::unique_ptr<ReadingOnlooker> onlooker;
};

// What else the machine does may hold any of three programs up, so that of several glides most
// count: an overlay that is late by itself is so each time.
TEST_F(StepsOnWayland, ReachTheSurfaceBeforeASecondTick) {
  constexpr std::size_t wanted = 5;
  ASSERT_NO_FATAL_FAILURE(followWithALog());
  keepSync();
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  send(MusicCommand(now(), MusicCommand::Action::playPause, ""));
  ASSERT_TRUE(waitFor(
      [&] {
        onlooker->look(100);
        return glidesIn(onlooker->seen()).size() >= wanted;
      },
      60))
      << "the rows did not scroll from line to line";
  const auto commits = commitsIn(log());
  const auto glides = glidesIn(onlooker->seen());
  const auto prompt = std::ranges::count_if(
      glides, [&](const Glide& glide) { return isPrompt(glide, onlooker->seen(), commits); });
  EXPECT_GE(prompt * 2, std::ssize(glides))
      << prompt << " of " << glides.size() << " glides were shown before a second tick";
}

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
