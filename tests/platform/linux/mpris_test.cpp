#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/desktop/mpris_scripting.h"
#include "platform/linux/desktop/track_search.h"
#include "platform/linux/fake_player.h"
#include "platform/linux/private_bus.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Action = MusicCommand::Action;
using Lines = std::vector<std::string>;

constexpr auto longest = std::chrono::milliseconds(400);  // 250 and what a busy machine adds

const std::vector<FakePlayer::Track> library{
    {"/track/0", "Der Mond ist aufgegangen", {"Traditional"}, "Abends"},
    {"/track/1", "Sakura", {"Choir"}, "Spring"},
    {"/track/2", "Sakura", {"Anna", "Ben"}, "Blossoms"},
    {"/track/3", "\xC3\x89tude", {"Traditional"}, ""},  // É composed
};

FakePlayer::Setup playing(std::size_t index = 0) {
  FakePlayer::Setup setup;
  setup.tracks = library;
  setup.current = index;
  return setup;
}

class MprisTest : public ::testing::Test {
 protected:
  ScriptOutcome ask() { return scripting.run({.source = "", .command = {}}); }

  ScriptOutcome command(Action action, std::int64_t milliseconds = 0, std::string title = "",
                        std::string artist = "") {
    PlayerCommand value;
    value.command = MusicCommand(0, action, std::move(title), std::move(artist));
    value.milliseconds = milliseconds;
    value.searchLocation = "music://catalogue.example/search?term=a%20b&c";
    return scripting.run({.source = "", .command = value});
  }

  PrivateBus bus;
  MprisScripting scripting;
};

void expectReply(const ScriptOutcome& outcome, const std::string& reply) {
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, reply);
  EXPECT_EQ(outcome.errorDescription, std::nullopt);
}

void expectError(const ScriptOutcome& outcome, const std::string& description) {
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, std::nullopt);
  ASSERT_TRUE(outcome.errorDescription);
  EXPECT_THAT(*outcome.errorDescription, HasSubstr(description));
}

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

TEST_F(MprisTest, PlayerThatEndsAndComesBackIsFoundAgain) {
  FakePlayer player(playing(1));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
  player.end();
  expectReply(ask(), "");
  FakePlayer again(playing(1));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
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

TEST_F(MprisTest, OtherPlayerThatHangsCostsAtMostOneRequest) {
  auto other = playing(1);
  other.busName = "org.mpris.MediaPlayer2.aaa";
  other.desktopEntry = "org.example.Player";
  FakePlayer hung(other);
  hung.stop();
  expectError(ask(), "did not answer in time");
  const auto started = std::chrono::steady_clock::now();
  expectReply(ask(), "");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(150));
  FakePlayer followed(playing(1));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
  hung.wake();
}

TEST_F(MprisTest, PlayerThatHungFromTheBeginningIsFollowedWhenItWakes) {
  FakePlayer player(playing(1));
  player.stop();
  expectError(ask(), "did not answer in time");
  player.wake();
  const Deadline deadline(std::chrono::seconds(5));
  while (ask().reply != "Sakura|Choir|Spring|0|playing" && !deadline.passed()) {
  }
  EXPECT_FALSE(deadline.passed());
}

TEST_F(MprisTest, StoppedProcessIsGivenUpAfterAQuarterOfASecond) {
  FakePlayer player(playing(1));
  expectReply(ask(), "Sakura|Choir|Spring|0|playing");
  player.stop();
  const auto started = std::chrono::steady_clock::now();
  expectError(ask(), "the player did not answer in time");
  const auto question = std::chrono::steady_clock::now() - started;
  EXPECT_GE(question, std::chrono::milliseconds(240));
  EXPECT_LT(question, longest);
  const auto again = std::chrono::steady_clock::now();
  expectError(command(Action::previous), "the player did not answer in time");
  EXPECT_LT(std::chrono::steady_clock::now() - again, longest);
  player.wake();
  const Deadline deadline(std::chrono::seconds(5));
  while (ask().reply != "Sakura|Choir|Spring|0|playing" && !deadline.passed()) {
  }
  EXPECT_FALSE(deadline.passed());
}

TEST_F(MprisTest, AllCallsOfARequestShareOneDeadline) {
  auto setup = playing(0);
  setup.changesAfter = 200;
  setup.mute = {"SetPosition"};  // the last call, with 50 ms left
  FakePlayer player(setup);
  ask();
  const auto started = std::chrono::steady_clock::now();
  expectError(command(Action::play, 5000, "Sakura", "Choir"), "in time");
  EXPECT_LT(std::chrono::steady_clock::now() - started, longest);
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

TEST_F(MprisTest, PlayGoesToTheTrackOfThisTitleAndArtist) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Sakura", "Anna, Ben"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/2", "Play"));
}

TEST_F(MprisTest, PlayFallsBackToTheFirstTrackOfThisTitle) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Sakura", "Somebody"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/1", "Play"));
}

TEST_F(MprisTest, PlayIgnoresLetterCaseAsScriptsDo) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "sAKURA", "anna, BEN"), "playing");
  expectReply(command(Action::play, 0, "e\xCC\x81tude", "Traditional"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/2", "Play",
                                        "GetTracksMetadata", "Raise", "GoTo /track/3", "Play"));
}

TEST_F(MprisTest, PlayWithoutAPositionDoesNotMoveThePlayHead) {
  for (const std::int64_t milliseconds : {0, -1}) {
    FakePlayer player(playing(0));
    expectReply(command(Action::play, milliseconds, "Sakura", "Choir"), "playing");
    EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/1", "Play"));
  }
}

TEST_F(MprisTest, PlaySetsThePositionOnceTheTrackHasChanged) {
  for (const unsigned changesAfter : {0u, 80u}) {
    auto setup = playing(0);
    setup.changesAfter = changesAfter;
    FakePlayer player(setup);
    expectReply(command(Action::play, 12'346, "Sakura", "Choir"), "playing");
    EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/1", "Play",
                                          "SetPosition /track/1 12346000"));
    expectReply(ask(), "Sakura|Choir|Spring|12346|playing");  // it was taken
  }
}

TEST_F(MprisTest, PlayFailsWhenTheTrackDoesNotChangeInTime) {
  auto setup = playing(0);
  setup.changes = false;
  FakePlayer player(setup);
  const auto started = std::chrono::steady_clock::now();
  expectError(command(Action::play, 1, "Sakura", "Choir"), "did not change to the track in time");
  EXPECT_LT(std::chrono::steady_clock::now() - started, longest);
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

// Whatever stands for xdg-open in PATH; it leaves what it was given in a file.
class SearchTest : public MprisTest {
 protected:
  SearchTest() {
    char pattern[] = "/tmp/vellora-search-XXXXXX";
    folder = ::mkdtemp(pattern);
    path = g_getenv("PATH");
  }
  ~SearchTest() override {
    g_setenv("PATH", path.c_str(), TRUE);
    std::filesystem::remove_all(folder);
  }

  void installOpener(const std::string& body) {
    std::ofstream(folder / "xdg-open") << "#!/bin/sh\n" << body << "\n";
    std::filesystem::permissions(folder / "xdg-open", std::filesystem::perms::owner_all);
    g_setenv("PATH", (folder.string() + ":" + path).c_str(), TRUE);
  }
  std::string opened() const {
    std::stringstream text;
    text << std::ifstream(folder / "opened").rdbuf();
    return text.str();
  }

  std::filesystem::path folder;
  std::string path;
};

TEST_F(SearchTest, TrackThatIsNotListedIsSearchedFor) {
  installOpener("echo \"$# $1\" >\"" + (folder / "part").string() + "\"; mv \"" +
                (folder / "part").string() + "\" \"" + (folder / "opened").string() + "\"");
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 5000, "Sakur", "Choir"), "searched");
  EXPECT_TRUE(runLoopUntil([&] { return !opened().empty(); }));
  EXPECT_EQ(opened(), "1 music://catalogue.example/search?term=a%20b&c\n");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata"));
}

TEST_F(SearchTest, DiacriticalMarksTellTitlesApart) {
  installOpener("true");
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Etude", "Traditional"), "searched");
}

TEST_F(SearchTest, PlayerWithoutATrackListIsSearched) {
  installOpener("true");
  auto setup = playing(0);
  setup.trackList = false;
  FakePlayer player(setup);
  expectReply(command(Action::play, 0, "Sakura", "Choir"), "searched");
  EXPECT_THAT(player.log(), IsEmpty());
}

TEST_F(SearchTest, SlowHandlerIsNotWaitedFor) {
  installOpener("exec sleep 2");
  FakePlayer player(playing(0));
  const auto started = std::chrono::steady_clock::now();
  expectReply(command(Action::play, 0, "Nothing", "Nobody"), "searched");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(1));
}

TEST_F(SearchTest, RepliesSearchedWithoutAnyHandler) {
  g_setenv("PATH", folder.c_str(), TRUE);
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Nothing", "Nobody"), "searched");
}

TEST_F(SearchTest, HungTrackListIsAnErrorAndNoSearch) {
  installOpener("touch \"" + (folder / "opened").string() + "\"");
  auto setup = playing(0);
  setup.mute = {"GetTracksMetadata"};
  FakePlayer player(setup);
  expectError(command(Action::play, 0, "Nothing", "Nobody"), "did not answer in time");
  EXPECT_FALSE(std::filesystem::exists(folder / "opened"));
}

TEST(MprisWithoutABusTest, NothingPlaysAndCommandsFail) {
  leaveSessionBus();
  MprisScripting scripting;
  expectReply(scripting.run({.source = "", .command = {}}), "");
  expectError(scripting.run({.source = "", .command = PlayerCommand()}), "no player");
}

TEST(ScriptTextsTest, CompareWithoutCaseButWithMarksPunctuationAndBlanks) {
  EXPECT_TRUE(scriptTextsEqual("", ""));
  EXPECT_TRUE(scriptTextsEqual("Sakura", "SAKURA"));
  EXPECT_TRUE(scriptTextsEqual("ΣΊΣΥΦΟΣ", "σίσυφος"));
  EXPECT_TRUE(scriptTextsEqual("É", "e\xCC\x81"));
  EXPECT_FALSE(scriptTextsEqual("É", "E"));
  EXPECT_FALSE(scriptTextsEqual("a-b", "ab"));
  EXPECT_FALSE(scriptTextsEqual("a b", "ab"));
  EXPECT_FALSE(scriptTextsEqual("Sakura", "Sakura "));
}

}  // namespace
}  // namespace vellora
