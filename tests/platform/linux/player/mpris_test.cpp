#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/player/mpris_fixture.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Action = MusicCommand::Action;

TEST_F(MprisTest, NoPlayerRepliesNothingPlays) { expectReply(ask(), ""); }

TEST_F(MprisTest, NoPlayerFailsACommand) {
  for (const auto action :
       {Action::play, Action::seek, Action::playPause, Action::previous, Action::next}) {
    expectError(command(action), "no player with the desktop entry com.apple.Music");
  }
}

TEST_F(MprisTest, StoppedPlayerRepliesNothingPlays) {
  auto setup = playing();
  setup.status = "Stopped";
  FakePlayer player(setup);
  expectReply(ask(), "");
}

TEST_F(MprisTest, PlayingTrackIsToldInFiveFields) {
  auto setup = playing(1);
  setup.position = 83'250'000;
  FakePlayer player(setup);
  expectReply(ask(), "Sakura|Choir|Spring|83250|playing");
}

TEST_F(MprisTest, PausedTrackIsToldAsPaused) {
  auto setup = playing(1);
  setup.status = "Paused";
  FakePlayer player(setup);
  expectReply(ask(), "Sakura|Choir|Spring|0|paused");
}

TEST_F(MprisTest, SeveralArtistsAreJoined) {
  FakePlayer player(playing(2));
  expectReply(ask(), "Sakura|Anna, Ben|Blossoms|0|playing");
}

TEST_F(MprisTest, PositionIsRoundedToTheNearestMillisecond) {
  const std::vector<std::pair<std::int64_t, std::string>> cases{
      {499, "0"}, {500, "1"}, {1'499, "1"}, {1'500, "2"}, {12'345'678, "12346"}};
  for (const auto& [microseconds, text] : cases) {
    auto setup = playing(1);
    setup.position = microseconds;
    FakePlayer player(setup);
    expectReply(ask(), "Sakura|Choir|Spring|" + text + "|playing");
  }
}

TEST_F(MprisTest, VerticalBarsInATitleStandAsTheyAre) {
  auto setup = playing();
  setup.tracks[0].title = "A|B";
  FakePlayer player(setup);
  expectReply(ask(), "A|B|Traditional|Abends|0|playing");
}

TEST_F(MprisTest, PlayerWithoutATrackHasAnEmptyTitle) {
  FakePlayer player(playing(library.size()));
  expectReply(ask(), "|||0|playing");
}

TEST_F(MprisTest, PlayersOfOtherApplicationsAreLeftAlone) {
  auto other = playing(1);
  other.busName = "org.mpris.MediaPlayer2.aaa";
  other.desktopEntry = "org.example.Player";
  auto nameless = playing(1);
  nameless.busName = "org.mpris.MediaPlayer2.com.apple.Music";
  nameless.desktopEntry.reset();
  FakePlayer first(other);
  FakePlayer second(nameless);
  expectReply(ask(), "");
  expectError(command(Action::next), "no player");
  FakePlayer followed(playing(0));
  expectReply(ask(), "Der Mond ist aufgegangen|Traditional|Abends|0|playing");
  expectReply(command(Action::next), "next");
  EXPECT_THAT(first.log(), IsEmpty());
  EXPECT_THAT(second.log(), IsEmpty());
}

TEST_F(MprisTest, PlayerThatDidNotKnowItsDesktopEntryIsAskedAgain) {
  auto setup = playing(1);
  setup.desktopEntry.reset();
  FakePlayer starting(setup);
  expectReply(ask(), "");
  starting.end();
  FakePlayer started(playing(1));  // under the same bus name, and nobody looked meanwhile
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
}

TEST_F(MprisTest, StandInForOtherPlayersIsLeftAlone) {
  auto standIn = playing(1);
  standIn.busName = "org.mpris.MediaPlayer2.playerctld";
  FakePlayer first(standIn);
  expectReply(ask(), "");
  auto followed = playing(0);
  followed.busName = "org.mpris.MediaPlayer2.zzz";
  FakePlayer second(followed);
  EXPECT_TRUE(hears("Der Mond ist aufgegangen|Traditional|Abends|0|playing"));
}

TEST_F(MprisTest, PlayerThatEndsAndComesBackIsFoundAgain) {
  FakePlayer player(playing(1));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
  player.end();
  expectReply(ask(), "");
  FakePlayer again(playing(1));
  EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
}

TEST_F(MprisTest, PlayerThatEndsInTheMiddleOfARequestIsAsGoodAsNone) {
  auto setup = playing(1);
  setup.deadly = {"GetAll"};
  FakePlayer asked(setup);
  expectReply(ask(), "");
  setup.deadly = {"Next"};
  setup.busName += "2";
  FakePlayer commanded(setup);
  expectError(command(Action::next), "no player with the desktop entry com.apple.Music");
}

TEST_F(MprisSilenceTest, OtherPlayerThatHangsCostsAtMostOneRequest) {
  auto other = playing(1);
  other.busName = "org.mpris.MediaPlayer2.aaa";
  other.desktopEntry = "org.example.Player";
  FakePlayer hung(other);
  hung.stop();
  expectError(ask(), "did not answer in time");
  EXPECT_TRUE(hears(""));
  FakePlayer followed(playing(1));
  EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
  hung.wake();
}

TEST_F(MprisSilenceTest, PlayerThatHungFromTheBeginningIsFollowedWhenItWakes) {
  FakePlayer player(playing(1));
  player.stop();
  expectError(ask(), "did not answer in time");
  player.wake();
  EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
}

TEST_F(MprisTest, StoppedProcessIsGivenUpAfterAQuarterOfASecond) {
  EXPECT_EQ(MprisScripting::defaultPatience, std::chrono::milliseconds(250));
  MprisScripting usual;
  const auto asked = [&] { return usual.run({.source = "", .command = {}}); };
  FakePlayer player(playing(1));
  const Deadline deadline(longest);
  while (asked().reply != "Sakura|Choir|Spring|0|playing" && !deadline.passed()) {
  }
  player.stop();
  const auto started = std::chrono::steady_clock::now();
  expectError(asked(), "did not answer in time");
  const auto question = std::chrono::steady_clock::now() - started;
  EXPECT_GE(question, std::chrono::milliseconds(240));
  EXPECT_LT(question, longest);
  player.wake();
}

TEST(MprisPatienceTest, TheEnvironmentMayAskForMore) {
  using std::chrono::milliseconds;
  const auto chosen = [](const char* text) {
    ::setenv("VELLORA_PLAYER_PATIENCE", text, 1);
    return MprisScripting::chosenPatience();
  };
  EXPECT_EQ(chosen("10"), milliseconds(10'000));
  EXPECT_EQ(chosen("1.5"), milliseconds(1500));
  EXPECT_EQ(chosen("1e300"), milliseconds(60'000));
  for (const char* useless : {"", "0", "-0", "-3", "soon", "nan", "inf", "3 s"}) {
    EXPECT_EQ(chosen(useless), MprisScripting::defaultPatience) << useless;
  }
  ::unsetenv("VELLORA_PLAYER_PATIENCE");
  EXPECT_EQ(MprisScripting::chosenPatience(), MprisScripting::defaultPatience);
}

TEST_F(MprisSilenceTest, StoppedProcessDelaysOneRequestOnlyAndFindsNoHeapWhenItWakes) {
  FakePlayer player(playing(1));
  EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
  player.stop();
  expectError(command(Action::next), "the player did not answer in time");
  for (int i = 0; i < 5; ++i) {
    expectError(ask(), "the player still does not answer");
    expectError(command(Action::next), "the player still does not answer");
  }
  player.wake();
  EXPECT_TRUE(hears("Sakura|Anna, Ben|Blossoms|0|playing"));
  EXPECT_THAT(player.log(), ElementsAre("Next"));
}

TEST_F(MprisSilenceTest, PlayerThatDiesWhileItIsSilentIsGone) {
  auto first = std::make_unique<FakePlayer>(playing(1));
  EXPECT_TRUE(hears("Sakura|Choir|Spring|0|playing"));
  first->stop();
  expectError(ask(), "the player did not answer in time");
  first.reset();
  EXPECT_TRUE(hears(""));
  FakePlayer second(playing(0));  // under the same bus name
  EXPECT_TRUE(hears("Der Mond ist aufgegangen|Traditional|Abends|0|playing"));
}

// Each of the two would be in time alone.
TEST_F(MprisSilenceTest, AllCallsOfARequestShareOneDeadline) {
  auto setup = playing(0);
  setup.changesAfter = 600;
  setup.seeksAfter = 600;
  FakePlayer player(setup);
  EXPECT_TRUE(hears("Der Mond ist aufgegangen|Traditional|Abends|0|playing"));
  expectError(command(Action::play, 5000, "Sakura", "Choir"), "in time");
}

TEST_F(MprisTest, RefusalIsTheErrorsDescription) {
  auto setup = playing(0);
  setup.refused = {"Next"};
  FakePlayer player(setup);
  const auto outcome = command(Action::next);
  expectError(outcome, "will not Next");
  EXPECT_EQ(outcome.errorDescription, "will not Next");
  EXPECT_THAT(player.log(), ElementsAre("Next"));  // and nothing after it
}

TEST_F(MprisTest, SeekSetsThePositionOfTheCurrentTrackAndPlays) {
  auto setup = playing(1);
  setup.status = "Paused";
  FakePlayer player(setup);
  expectReply(command(Action::seek, 90'500), "seeked");
  EXPECT_THAT(player.log(), ElementsAre("SetPosition /track/1 90500000", "Play"));
  expectReply(ask(), "Sakura|Choir|Spring|90500|playing");
}

TEST_F(MprisTest, SeekBeforeTheBeginningGoesToTheBeginning) {
  FakePlayer player(playing(1));
  expectReply(command(Action::seek, -5), "seeked");
  EXPECT_THAT(player.log(), ElementsAre("SetPosition /track/1 0", "Play"));
}

TEST_F(MprisTest, SeekFarBeyondTheEndDoesNotWrapAround) {
  FakePlayer player(playing(1));
  expectReply(command(Action::seek, std::numeric_limits<std::int64_t>::max()), "seeked");
  EXPECT_THAT(player.log(), ElementsAre("SetPosition /track/1 9223372036854775000", "Play"));
}

TEST_F(MprisTest, PlayPauseGoesByThePlaybackStatus) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"Playing", "Pause"}, {"Paused", "Play"}, {"Stopped", "Play"}};
  for (const auto& [status, method] : cases) {
    auto setup = playing(1);
    setup.status = status;
    FakePlayer player(setup);
    expectReply(command(Action::playPause), "toggled");
    EXPECT_THAT(player.log(), ElementsAre(method)) << status;
  }
}

TEST_F(MprisTest, PreviousWithinTwoSecondsGoesToThePreviousTrack) {
  auto setup = playing(1);
  setup.position = 2'000'000;
  FakePlayer player(setup);
  expectReply(command(Action::previous), "previous");
  EXPECT_THAT(player.log(), ElementsAre("Previous", "Play"));
}

TEST_F(MprisTest, PreviousAfterTwoSecondsRestartsTheTrack) {
  auto setup = playing(1);
  setup.position = 2'000'001;
  setup.status = "Paused";
  FakePlayer player(setup);
  expectReply(command(Action::previous), "previous");
  EXPECT_THAT(player.log(), ElementsAre("SetPosition /track/1 0", "Play"));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
}

TEST_F(MprisTest, NextPlaysAlsoFromAPause) {
  auto setup = playing(0);
  setup.status = "Paused";
  FakePlayer player(setup);
  expectReply(command(Action::next), "next");
  EXPECT_THAT(player.log(), ElementsAre("Next", "Play"));
}

TEST(MprisWithoutABusTest, NothingPlaysAndCommandsFail) {
  leaveSessionBus();
  MprisScripting scripting;
  expectReply(scripting.run({.source = "", .command = {}}), "");
  expectError(scripting.run({.source = "", .command = PlayerCommand()}),
              "there is no session bus that answers");
}

TEST(MprisOverTwoBusesTest, ABusThatComesAfterTheLastOneIsTakenUp) {
  MprisScripting scripting;
  const auto ask = [&] { return scripting.run({.source = "", .command = {}}); };
  {
    const PrivateBus bus;
    FakePlayer player(playing(1));
    EXPECT_TRUE(runLoopUntil([&] { return ask().reply == "Sakura|Choir|Spring|0|playing"; }));
  }
  expectReply(ask(), "");  // and no line of a player
  const PrivateBus bus;
  FakePlayer player(playing(2));
  EXPECT_TRUE(runLoopUntil([&] { return ask().reply == "Sakura|Anna, Ben|Blossoms|0|playing"; }));
}

}  // namespace
}  // namespace vellora
