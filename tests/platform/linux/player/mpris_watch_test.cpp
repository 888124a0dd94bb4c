#include "platform/linux/player/mpris_watch.h"

#include <functional>
#include <memory>
#include <thread>

#include "platform/linux/player/mpris_fixture.h"

namespace vellora {
namespace {

constexpr double begin = 1'000'000;
constexpr double step = 0.1;  // seconds of the watch's time, however long a look takes

class MprisWatches : public ::testing::Test {
 protected:
  std::optional<HeardTrack> look() {
    now += step;
    return watch.look(now);
  }
  // Looks until what is heard meets the condition.
  bool hears(const std::function<bool(const std::optional<HeardTrack>&)>& condition) {
    const Deadline deadline(longest);
    while (!condition(look())) {
      if (deadline.passed()) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
  }
  bool hears(const std::string& title) {
    return hears([&](const auto& heard) { return heard && heard->track.title == title; });
  }
  bool hearsNothing() {
    return hears([](const auto& heard) { return !heard; });
  }
  // Looks as often as any answer may need that comes at all.
  bool keepsHearing(const std::string& title) {
    for (int i = 0; i < 100; ++i) {
      const auto heard = look();
      if ((heard ? heard->track.title : "") != title) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
  }

  static FakePlayer::Setup named(const std::string& name, std::size_t track) {
    auto setup = playing(track);
    setup.busName = "org.mpris.MediaPlayer2." + name;
    setup.desktopEntry = name;
    return setup;
  }

  double now = begin;
  PrivateBus bus;
  MprisWatch watch;
};

TEST_F(MprisWatches, NeedNoLookUntilSomethingIsDue) {
  const auto rests = [&](double seconds) {
    return hears([&](const auto&) { return watch.pause(now) > seconds; });
  };
  EXPECT_TRUE(rests(1)) << "where there is no player, a look every other second";
  EXPECT_LE(watch.pause(now), MprisWatch::listInterval);
  FakePlayer player(named("any", 1));
  ASSERT_TRUE(hears("Sakura"));
  EXPECT_TRUE(rests(0.2));
  EXPECT_LE(watch.pause(now), MprisWatch::askInterval);
  now += MprisWatch::askInterval;
  watch.look(now);
  EXPECT_EQ(watch.pause(now), MprisWatch::answerInterval) << "an answer is awaited";
}

TEST_F(MprisWatches, TellWhatAnyPlayerPlays) {
  auto setup = named("any.instance1", 1);
  setup.position = 83'250'000;
  FakePlayer player(setup);
  ASSERT_TRUE(hears("Sakura"));
  const auto heard = look();
  EXPECT_EQ(heard->player, "any.instance1") << "one without a name for people";
  EXPECT_EQ(heard->track.artist, "Choir");
  EXPECT_EQ(heard->track.album, "Spring");
  EXPECT_EQ(heard->track.position, 83.25);
  EXPECT_TRUE(heard->track.playing);
  EXPECT_TRUE(heard->track.isUsable(now));
}

TEST_F(MprisWatches, TellNothingWithoutAPlayerThatPlays) {
  EXPECT_TRUE(keepsHearing(""));
  auto stopped = named("a", 0);
  stopped.status = "Stopped";
  auto paused = named("b", 1);
  paused.status = "Paused";
  const FakePlayer one(stopped);
  const FakePlayer two(paused);
  const FakePlayer untitled(named("c", library.size()));
  EXPECT_TRUE(keepsHearing(""));
}

TEST_F(MprisWatches, APlayerThatAnswersNothingHoldsUpNobody) {
  auto mute = named("a", 0);
  mute.mute = {"Get", "GetAll"};
  const FakePlayer silent(mute);
  EXPECT_TRUE(keepsHearing(""));
  const FakePlayer other(named("z", 1));
  EXPECT_TRUE(hears("Sakura"));
  EXPECT_TRUE(keepsHearing("Sakura"));
}

TEST_F(MprisWatches, APlayerThatHangsIsGivenUpUntilItAnswers) {
  FakePlayer player(named("a", 1));
  ASSERT_TRUE(hears("Sakura"));
  player.stop();
  const double since = now;
  EXPECT_TRUE(hearsNothing());
  EXPECT_GT(now - since, MprisWatch::patience - 2 * MprisWatch::askInterval);
  player.wake();
  EXPECT_TRUE(hears("Sakura"));
}

TEST_F(MprisWatches, AConnectionThatEndsIsMadeAnew) {
  const FakePlayer player(named("a", 1));
  ASSERT_TRUE(hears("Sakura"));
  {
    const SessionBus shared = connectToSessionBus(longest);
    ASSERT_TRUE(shared);
    ASSERT_TRUE(g_dbus_connection_close_sync(shared.get(), nullptr, nullptr));
  }
  EXPECT_TRUE(hearsNothing());
  EXPECT_TRUE(hears("Sakura"));
}

TEST_F(MprisWatches, WithoutABusTellNothing) {
  leaveSessionBus();
  EXPECT_TRUE(keepsHearing(""));
}

}  // namespace
}  // namespace vellora
