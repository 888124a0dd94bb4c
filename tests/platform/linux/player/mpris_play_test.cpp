#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/player/mpris_fixture.h"
#include "platform/linux/player/track_search.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Action = MusicCommand::Action;

using MprisPlayTest = MprisTest;

TEST_F(MprisPlayTest, PlayGoesToTheTrackOfThisTitleAndArtist) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Sakura", "Anna, Ben"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/2", "Play"));
}

TEST_F(MprisPlayTest, PlayFallsBackToTheFirstTrackOfThisTitle) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Sakura", "Somebody"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/1", "Play"));
}

TEST_F(MprisPlayTest, PlayIgnoresLetterCaseAsScriptsDo) {
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "sAKURA", "anna, BEN"), "playing");
  expectReply(command(Action::play, 0, "e\xCC\x81tude", "Traditional"), "playing");
  EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/2", "Play",
                                        "GetTracksMetadata", "Raise", "GoTo /track/3", "Play"));
}

TEST_F(MprisPlayTest, PlayWithoutAPositionDoesNotMoveThePlayHead) {
  for (const std::int64_t milliseconds : {0, -1}) {
    FakePlayer player(playing(0));
    expectReply(command(Action::play, milliseconds, "Sakura", "Choir"), "playing");
    EXPECT_THAT(player.log(), ElementsAre("GetTracksMetadata", "Raise", "GoTo /track/1", "Play"));
  }
}

TEST_F(MprisPlayTest, PlaySetsThePositionOnceTheTrackHasChanged) {
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

TEST_F(MprisSilenceTest, PlayFailsWhenTheTrackDoesNotChangeInTime) {
  auto setup = playing(0);
  setup.changes = false;
  FakePlayer player(setup);
  expectError(command(Action::play, 1, "Sakura", "Choir"), "did not change to the track in time");
}

// Data folders of the user in which one program handles URLs of the scheme "music". GLib looks for
// them once in a process.
class MusicHandler : public ::testing::Environment {
 public:
  void SetUp() override {
    char pattern[] = "/tmp/vellora-handler-XXXXXX";
    folder_ = ::mkdtemp(pattern);
    const auto applications = folder_ / "applications";
    std::filesystem::create_directory(applications);
    std::ofstream(applications / "catalogue.desktop")
        << "[Desktop Entry]\nType=Application\nName=Catalogue\nExec=true %u\n";
    std::ofstream(applications / "mimeinfo.cache")
        << "[MIME Cache]\nx-scheme-handler/music=catalogue.desktop;\n";
    g_setenv("XDG_DATA_HOME", folder_.c_str(), TRUE);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

 private:
  std::filesystem::path folder_;
};
[[maybe_unused]] const auto* const musicHandler =
    ::testing::AddGlobalTestEnvironment(new MusicHandler);

// Whatever stands for xdg-open in PATH; it leaves what it was given in a file.
class SearchTest : public MprisTest {
 protected:
  explicit SearchTest(std::chrono::milliseconds patience = longest) : MprisTest(patience) {
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
  // It is done only when it has seen that the reply was there; it gives up after a while.
  installOpener("cd \"" + folder.string() +
                "\"; for i in $(seq 400); do [ ! -e replied ] || exec touch opened; "
                "sleep 0.05; done");
  FakePlayer player(playing(0));
  expectReply(command(Action::play, 0, "Nothing", "Nobody"), "searched");
  std::ofstream(folder / "replied") << "yes";
  EXPECT_TRUE(
      runLoopUntil([&] { return std::filesystem::exists(folder / "opened"); }, longest.count()));
}

TEST_F(SearchTest, OpenerThatCannotBeStartedIsAnError) {
  g_setenv("PATH", folder.c_str(), TRUE);
  std::ofstream(folder / "true") << "#!/bin/sh\n";  // the handler
  std::filesystem::permissions(folder / "true", std::filesystem::perms::owner_all);
  FakePlayer player(playing(0));
  expectError(command(Action::play, 0, "Nothing", "Nobody"), "xdg-open cannot be started");
}

TEST_F(SearchTest, OpenerIsNotStartedForASchemeThatNothingHandles) {
  installOpener("echo \"$1\" >>\"" + (folder / "opened").string() + "\"");
  FakePlayer player(playing(0));
  for (const char* location : {"unhandled:first", "no location", "music:second"}) {
    searchLocation = location;
    expectReply(command(Action::play, 0, "Nothing", "Nobody"), "searched");
  }
  EXPECT_TRUE(runLoopUntil([&] { return opened().find("second") != std::string::npos; }));
  EXPECT_EQ(opened(), "music:second\n");
}

class SearchSilenceTest : public SearchTest {
 protected:
  SearchSilenceTest() : SearchTest(brief) {}
};

TEST_F(SearchSilenceTest, HungTrackListIsAnErrorAndNoSearch) {
  installOpener("echo \"$1\" >>\"" + (folder / "opened").string() + "\"");
  auto setup = playing(0);
  setup.mute = {"GetTracksMetadata"};
  FakePlayer player(setup);
  searchLocation = "music:first";
  expectError(command(Action::play, 0, "Nothing", "Nobody"), "did not answer in time");
  player.end();
  FakePlayer other(playing(0));
  searchLocation = "music:second";
  EXPECT_TRUE(runLoopUntil(
      [&] { return command(Action::play, 0, "Nothing", "Nobody").reply == "searched"; }));
  EXPECT_TRUE(runLoopUntil([&] { return opened().find("second") != std::string::npos; }));
  EXPECT_EQ(opened(), "music:second\n");
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
  EXPECT_FALSE(scriptTextsEqual("Sakura", std::string_view("Sakura\0x", 8)));
}

}  // namespace
}  // namespace vellora
