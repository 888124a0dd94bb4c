#include "companion/program/feeding.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

#include "base/files.h"
#include "companion/song_folder.h"
#include "companion/view/plain_view.h"
#include "exchange/exchange_folder.h"
#include "exchange/records/json.h"
#include "support/fake_clock.h"

namespace vellora::companion {
namespace {

constexpr double minutes = 300;  // seconds

// Finds nothing; to be looked at every other second.
class NoPlayers final : public PlayerWatch {
 public:
  explicit NoPlayers(int& looks) : looks_(looks) {}
  std::optional<HeardTrack> look(double) override {
    ++looks_;
    return std::nullopt;
  }
  double pause(double) const override { return 2; }

 private:
  int& looks_;
};

// What is under way for as long as the test says.
class Adding final : public SongAddition {
 public:
  explicit Adding(bool& underWay) : underWay_(underWay) {}
  void begin(Song&) override {}
  void drop() override {}
  bool step(double, Song&) override { return false; }
  bool underWay() const override { return underWay_; }
  std::string notice() const override { return {}; }

 private:
  bool& underWay_;
};

class FeedingOnAClock : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    put("songs/River Band - Night Drive.lrc",
        "[00:10.00]a\n[00:11.37]b\n[00:11.50]c\n[00:30.00]d\n");
    std::filesystem::create_directory(folder / "Vellora");
  }
  void begin() {
    Keeper keeper(Library(folder / "songs", ""), CaptionSettings());
    keeper.add(std::make_unique<Adding>(underWay));
    feeding.emplace(clock, std::move(keeper), ExchangeFolder(folder / "Vellora"),
                    LyricShift(folder / "shifts"));
    // The folder's first look takes as many steps as it takes, without a pause.
    while (feeding->step(), feeding->pause() == 0) {
    }
  }
  void publish(double position, bool playing) {
    ASSERT_TRUE(writeFileAtomically(
        folder / "Vellora" / nowPlayingFileName,
        *encode(NowPlayingTrack(clock.now(), "Night Drive", "River Band", "", position, playing))));
  }
  // How many steps there are in that time when nothing wakes the program.
  int stepsIn(double seconds, const std::function<void(const ViewState&)>& see = {}) {
    const double end = clock.now() + seconds;
    int steps = 0;
    while (clock.now() < end) {
      const ViewState state = feeding->step();
      ++steps;
      if (see) see(state);
      clock.advance(std::min(feeding->pause(), untilNextLine(state)));
    }
    return steps;
  }

  FakeClock clock;
  bool underWay = false;
  std::optional<Feeding> feeding;
};

TEST_F(FeedingOnAClock, StepsHardlyMoreThanTwiceASecondWhereNothingPlays) {
  begin();
  // The files that are kept fresh have times of their own.
  EXPECT_LE(stepsIn(minutes), 2 * minutes * 1.2);
}

TEST_F(FeedingOnAClock, NeitherDoesOneThatListensToPlayers) {
  begin();
  int looks = 0;
  feeding->listenTo(std::make_unique<NoPlayers>(looks));
  EXPECT_LE(stepsIn(minutes), 2 * minutes * 1.2);
  EXPECT_GE(looks, minutes / 2);
}

TEST_F(FeedingOnAClock, KeepsTheFilesFreshNevertheless) {
  begin();
  double oldestRequest = 0, oldestSnapshot = 0;
  stepsIn(minutes, [&](const ViewState&) {
    const auto request = decode<SyncRequest>(*readWholeFile(folder / "Vellora" / "sync.json"));
    const auto snapshot =
        decode<OverlaySnapshot>(*readWholeFile(folder / "Vellora" / snapshotFileName));
    oldestRequest = std::max(oldestRequest, clock.now() - request->updatedAt);
    oldestSnapshot = std::max(oldestSnapshot, clock.now() - snapshot->updatedAt);
  });
  EXPECT_LE(oldestRequest, Keeper::syncInterval + shortestWait);
  EXPECT_LE(oldestSnapshot, Keeper::snapshotInterval + shortestWait);
}

TEST_F(FeedingOnAClock, StepsWhenALineBegins) {
  begin();
  publish(9, true);
  const double started = clock.now() - 9;
  std::vector<std::optional<std::size_t>> lines;
  std::vector<double> begun;
  const int steps = stepsIn(5, [&](const ViewState& state) {
    if (!lines.empty() && lines.back() == state.line) return;
    lines.push_back(state.line);
    begun.push_back(clock.now() - started);
  });
  ASSERT_EQ(lines, (std::vector<std::optional<std::size_t>>{std::nullopt, 0, 1, 2}));
  EXPECT_NEAR(begun[1], 10, 0.02);
  EXPECT_NEAR(begun[2], 11.37, 0.02);
  EXPECT_NEAR(begun[3], 11.5, 0.02);
  EXPECT_LE(steps, 30);
}

TEST_F(FeedingOnAClock, WaitsForNoLineOfASongThatIsPaused) {
  begin();
  publish(9.99, false);
  EXPECT_LE(stepsIn(7), 7 * 4);
  EXPECT_EQ(untilNextLine(feeding->step()), INFINITY);
}

TEST_F(FeedingOnAClock, StepsTenTimesASecondWhileSomethingMayCome) {
  begin();
  publish(31, true);
  underWay = true;
  EXPECT_GE(stepsIn(5), 49);
  underWay = false;
  EXPECT_LE(stepsIn(2), 8);
}

TEST_F(FeedingOnAClock, AnswersAKeyWithTheNextStepAndFollowsTheCommand) {
  begin();
  publish(31, true);
  stepsIn(1);
  EXPECT_TRUE(feeding->grant(Wish::playPause));
  feeding->step();
  EXPECT_TRUE(fileExists(folder / "Vellora" / commandFileName));
  EXPECT_LE(feeding->pause(), Keeper::stepInterval);
  EXPECT_FALSE(feeding->grant(Wish::quit));
}

class StatusOfAnOverlay : public FeedingOnAClock {
 protected:
  void SetUp() override {
    FeedingOnAClock::SetUp();
    begin();
    say("Ready");
  }
  void say(const char* message, bool stopped = false) const {
    ASSERT_TRUE(writeFileAtomically(file(), *encode(OverlayStatus(message, stopped))));
  }
  std::filesystem::path file() const { return folder / "Vellora" / statusFileName; }
  // What is shown at the end of that time, and how often something else was meanwhile.
  std::string shownAfter(double seconds, const std::function<void()>& meanwhile = {}) {
    std::string shown;
    changes = 0;
    stepsIn(seconds, [&](const ViewState& state) {
      if (state.overlay != shown) ++changes;
      shown = state.overlay;
      if (meanwhile) meanwhile();
    });
    return shown;
  }

  int changes = 0;
};

TEST_F(StatusOfAnOverlay, GoesWithIt) {
  EXPECT_EQ(shownAfter(5), "Ready");
  EXPECT_EQ(shownAfter(StatusWatch::interval + StatusWatch::patience), "");
}

TEST_F(StatusOfAnOverlay, StaysWhileItRuns) {
  // As the overlay does.
  const auto writeAgain = [&] {
    if (!fileExists(file())) say("Ready");
  };
  EXPECT_EQ(shownAfter(minutes, writeAgain), "Ready");
  EXPECT_EQ(changes, 1) << "the first";
}

TEST_F(StatusOfAnOverlay, IsNotAskedForWhileItTellsWhatPlays) {
  shownAfter(60, [&] { publish(1, true); });
  EXPECT_TRUE(fileExists(file()));
}

TEST_F(StatusOfAnOverlay, OneThatHasStoppedIsBelieved) {
  say("Overlay stopped", true);
  EXPECT_EQ(shownAfter(60), "Overlay stopped");
  EXPECT_TRUE(fileExists(file()));
}

TEST_F(StatusOfAnOverlay, ComesBackWithAnother) {
  shownAfter(60);
  say("Waiting for Music");
  EXPECT_EQ(shownAfter(2), "Waiting for Music");
}

TEST_F(FeedingOnAClock, AClockThatIsSetBackKeepsNothingWaiting) {
  begin();
  stepsIn(10);
  clock.advance(-minutes);
  EXPECT_LE(feeding->pause(), Keeper::idleInterval);
  feeding->step();
  const auto snapshot =
      decode<OverlaySnapshot>(*readWholeFile(folder / "Vellora" / snapshotFileName));
  EXPECT_EQ(snapshot->updatedAt, clock.now());
  EXPECT_LE(stepsIn(60), 150);
}

}  // namespace
}  // namespace vellora::companion
