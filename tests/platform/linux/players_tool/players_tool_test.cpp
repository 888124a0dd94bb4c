#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/glib/run_program.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string described = "[Player]\nName=Mine\n[Window]\nClass=Mine\n";
const std::string page =
    "[Player]\nName=A page\n[Window]\nClass=@browsers;feishin\n"
    "Document=https://music.example.org/*\n[Lyrics]\nClass=lyrics\n[Row]\nClass=line\n";

// The installed program in a folder of its own, with descriptions of its own beside it.
class PlayersToolTest : public ::testing::Test {
 protected:
  PlayersToolTest() {
    fs::create_directory(folder / "bin");
    fs::copy_file(VELLORA_PLAYERS_PROGRAM, program);
    g_setenv("XDG_DATA_HOME", (folder / "home").c_str(), TRUE);
  }

  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), program);
    return runProgram(std::move(arguments));
  }

  TemporaryFolder folder;
  const fs::path program = folder / "bin" / "vellora-players";
  const fs::path own = folder / "home/vellora/players";
  const fs::path shipped = folder / "share/vellora/players";
};

TEST_F(PlayersToolTest, ListsDescriptionsWithTheirWindowsAndFilesAndWhatTheyHide) {
  fs::create_directories(own);
  fs::create_directories(shipped);
  writeText(own / "mine.player", described);
  writeText(shipped / "mine.player", described);
  writeText(shipped / "page.player", page);
  const auto outcome = run({"list"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            "mine: Mine\n"
            "    windows Mine\n"
            "    lyrics  read as they are\n"
            "    file    " +
                (own / "mine.player").string() +
                "\n"
                "    hides   " +
                (shipped / "mine.player").string() +
                "\n"
                "\n"
                "page: A page\n"
                "    windows @browsers, feishin\n"
                "    pages   https://music.example.org/*\n"
                "    lyrics  as described\n"
                "    file    " +
                (shipped / "page.player").string() +
                "\n"
                "\n"
                "2 descriptions, from\n"
                "    " +
                own.string() +
                "\n"
                "    " +
                shipped.string() + "\n");
}

TEST_F(PlayersToolTest, ListsProblemsLastAndSaysWhatABrokenFileHides) {
  fs::create_directories(own);
  fs::create_directories(shipped);
  writeText(own / "mine.player", described + "Colour=red\n");
  writeText(shipped / "mine.player", described);
  const auto outcome = run({"list"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output,
            "0 descriptions, from\n    " + own.string() + "\n    " + shipped.string() +
                "\n\nNot read:\n" + (own / "mine.player").string() +
                ":5: unknown key \"Colour\" in [Window]; its keys are Class and Document\n" +
                (own / "mine.player").string() + " hides " + (shipped / "mine.player").string() +
                " nevertheless\n");
}

TEST_F(PlayersToolTest, SaysWhereItLooksWhereThereIsNothing) {
  const auto outcome = run({"list"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output, "0 descriptions, from\n    " + own.string() + " (not there)\n    " +
                                shipped.string() + " (not there)\n");
}

TEST_F(PlayersToolTest, ListsWhatWasBuiltWithIt) {
  const auto outcome = runProgram({VELLORA_PLAYERS_PROGRAM, "list"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.output, HasSubstr("com.apple.Music: Music\n"));
  EXPECT_THAT(outcome.output, HasSubstr("labelled-region: "));
}

TEST_F(PlayersToolTest, ChecksFilesAndSaysWhereAGoodOneBelongs) {
  fs::create_directories(own);
  const fs::path good = folder / "page.player";
  const fs::path placed = own / "mine.player";
  writeText(good, page);
  writeText(placed, described);
  const auto outcome = run({"check", good, placed});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output, good.string() +
                                ": no problems: A page\n"
                                "    windows @browsers, feishin\n"
                                "    pages   https://music.example.org/*\n"
                                "    lyrics  as described\n"
                                "    put it  at " +
                                (own / "page.player").string() + "\n" + placed.string() +
                                ": no problems: Mine\n"
                                "    windows Mine\n"
                                "    lyrics  read as they are\n");
}

TEST_F(PlayersToolTest, ChecksEveryFileAndTellsEachProblem) {
  const fs::path bad = folder / "bad.player";
  writeText(bad, page + "[Colours]\n");
  writeText(folder / "good.player", described);
  const auto outcome = run({"check", bad, folder / "missing.player", folder / "good.player"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output,
              StartsWith(bad.string() + ":10: unknown group [Colours]; the groups are Player, "));
  EXPECT_THAT(outcome.output, HasSubstr((folder / "missing.player").string() + ": no such file; "));
  EXPECT_THAT(outcome.output, HasSubstr("good.player: no problems: Mine\n"));
}

TEST_F(PlayersToolTest, WhatIsToldCannotSteerATerminal) {
  const fs::path bad = folder / "\x1b[2Jx\n\xff.player";
  writeText(bad, "[Player]\nName=A\\nB\n[Window]\nClass=C\\tD\\s\n");
  const auto outcome = run({"check", bad, "/\x1b[2J\n"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output.find('\x1b'), std::string::npos);
  EXPECT_EQ(outcome.output.find('\t'), std::string::npos);
  EXPECT_THAT(outcome.output, HasSubstr("/?[2J?: no such file"));
  EXPECT_THAT(outcome.output, HasSubstr("?[2Jx?\uFFFD.player: no problems: A?B\n"));
  const auto refused = run({"\x1b[2J\xff"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.errors.find('\x1b'), std::string::npos);
}

TEST_F(PlayersToolTest, RefusesArgumentsThatItDoesNotKnow) {
  using Row = std::pair<std::vector<std::string>, std::string>;
  for (const auto& [arguments, reason] : {
           Row{{}, "say list, check or show"},
           Row{{"lsit"}, "unknown command \"lsit\""},
           Row{{"--lsit"}, "unknown option \"--lsit\""},
           Row{{"list", "--all"}, "unknown option \"--all\""},
           Row{{"list", "more"}, "one word too many: \"more\""},
           Row{{"check"}, "check which file?"},
           Row{{"show", "more"}, "one word too many: \"more\""},
           Row{{"show", "--wait"}, "--wait wants whole seconds, 0 to 600"},
           Row{{"show", "--wait", "soon"}, "--wait wants whole seconds, 0 to 600"},
           Row{{"show", "--wait", "-1"}, "--wait wants whole seconds, 0 to 600"},
           Row{{"show", "--wait", "601"}, "--wait wants whole seconds, 0 to 600"},
           Row{{"show", "--wait", "1.5"}, "--wait wants whole seconds, 0 to 600"},
           Row{{"list", "--wait", "1"}, "unknown option \"--wait\""},
           Row{{"check", "--quick", "a"}, "unknown option \"--quick\""},
       }) {
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.status, 2) << reason;
    EXPECT_EQ(outcome.output, "") << reason;
    EXPECT_EQ(outcome.errors,
              "vellora-players: " + reason + "\nRun with --help for more information.\n");
  }
}

TEST_F(PlayersToolTest, SaysThatThereIsNoDisplayToShowAWindowOf) {
  g_setenv("DISPLAY", ":no-display", TRUE);
  const auto outcome = run({"show", "--wait", "0"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors,
            "vellora-players: there is no X display (DISPLAY) that can be reached\n");
}

TEST_F(PlayersToolTest, TakesAFileThatBeginsWithADashAfterTwo) {
  const auto outcome = run({"check", "--", "--help"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, StartsWith("--help: no such file; "));
}

TEST_F(PlayersToolTest, ExplainsItself) {
  for (const auto& arguments : {std::vector<std::string>{"--help"}, {"-h"}, {"check", "--help"}}) {
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Usage: vellora-players list\n"));
    EXPECT_EQ(outcome.errors, "");
  }
  EXPECT_THAT(run({"show", "--help"}).output,
              HasSubstr("Usage: vellora-players show [--wait SECONDS]\n"));
  EXPECT_EQ(run({"--version"}).output, "vellora-players " VELLORA_VERSION "\n");
}

}  // namespace
}  // namespace vellora
