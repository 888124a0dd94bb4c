// The program as a shell sees it: what it writes where no terminal is, and its exit statuses.
#include <array>
#include <cstdio>
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class Program : public SongFolder {
 protected:
  struct Result {
    int status = -1;
    std::string text;  // standard output and standard error
  };
  Result run(const std::string& words, int seconds = 60) const {
    const std::string line = "cd " + folder.string() +
                             "; export HOME=$PWD XDG_CONFIG_HOME=" + (folder / "config").string() +
                             "; timeout " + std::to_string(seconds) + " " VELLORA_COMPANION " " +
                             words + " 2>&1";
    Result result;
    FILE* const pipe = popen(line.c_str(), "r");
    std::array<char, 4096> bytes{};
    for (std::size_t count = 0; (count = fread(bytes.data(), 1, bytes.size(), pipe)) > 0;) {
      result.text.append(bytes.data(), count);
    }
    const int waited = pclose(pipe);
    result.status = WIFEXITED(waited) ? WEXITSTATUS(waited) : -1;
    return result;
  }
};

TEST_F(Program, ChecksWithAStatusThatTellsWhetherAllIsWell) {
  put("songs/a.lrc", "[00:01.00]a\n[00:01.00]b\n");
  EXPECT_EQ(run("check songs").status, 0);
  put("songs/b.lrc", "[00:01.00]a\n");
  EXPECT_EQ(run("check songs").status, 1);
  EXPECT_EQ(run("check nowhere").status, 5);
}

TEST_F(Program, ImportsWithAStatusThatTellsWhetherAllIsWell) {
  put("songs/a.lrc", "[00:01.00]a\n[00:01.00]b\n");
  EXPECT_EQ(run("import songs --to library").status, 0);
  EXPECT_EQ(run("import songs --to library").status, 1) << "what is there stays";
  EXPECT_EQ(run("import songs --to library --force").status, 0);
  EXPECT_EQ(run("check library").status, 0);
  EXPECT_EQ(run("import songs --to songs").status, 5);
  EXPECT_EQ(run("import songs --to songs/a.lrc").status, 5);
}

TEST_F(Program, WrongWordsHaveStatusTwo) {
  EXPECT_EQ(run("").status, 2);
  EXPECT_EQ(run("--wrong").status, 2);
  EXPECT_EQ(run("next --exchange here").status, 2);
  EXPECT_EQ(run("--help").status, 0);
  EXPECT_EQ(run("--version").text, "vellora-companion " VELLORA_VERSION "\n");
}

TEST_F(Program, TellsWhatHoldsAndFromWhere) {
  const std::string file = (folder / "config/vellora/companion.conf").string();
  EXPECT_EQ(run("config").text.find("# " + file + ", which is not there; --write makes it\n"), 0U);
  put("config/vellora/companion.conf", "# mine\nfolder = /songs\nlanguage = de\n");
  const Result result = run("config --exchange /x/Vellora --font-size 30");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.text.find("# " + file + "\n"), 0U);
  std::set<std::string> lines;
  std::istringstream all(result.text);
  std::size_t width = 0;
  for (std::string line; std::getline(all, line);) {
    const std::size_t origin = line.rfind('(');
    if (origin == std::string::npos) continue;
    EXPECT_TRUE(width == 0 || width == origin) << line;
    width = origin;
    lines.insert(line.substr(0, line.find_last_not_of(' ', origin - 1) + 1) + " " +
                 line.substr(origin));
  }
  for (const char* expected :
       {"folder = /songs (line 2)", "exchange = /x/Vellora (command line)",
        "language = de (line 3)", "font-size = 30 (command line)", "plain = no (default)",
        "lyrics = none (default)", "lyrics-server = https://lrclib.net (default)",
        "overlay-program = (not set)"}) {
    EXPECT_TRUE(lines.contains(expected)) << expected << " in\n" << result.text;
  }
}

TEST_F(Program, WithoutAFolderItTakesTheUsersMusic) {
  EXPECT_EQ(run("check").status, 2) << "there is none";
  put("Musik/a.lrc", "[00:01.00]a\n[00:01.00]b\n");
  put("config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/Musik\"\n");
  EXPECT_NE(run("check").text.find("1 song, 1 complete"), std::string::npos);
}

TEST_F(Program, MakesTheFileOfSettingsOnceAndNeverReplacesIt) {
  EXPECT_EQ(run("config --write").status, 0);
  const std::string made = textOf("config/vellora/companion.conf");
  EXPECT_NE(made.find("\n#font-size = 26\n"), std::string::npos) << made;
  EXPECT_EQ(run("config").status, 0);
  put("config/vellora/companion.conf", "plain = yes\n");
  EXPECT_EQ(run("config --write").status, 5);
  EXPECT_EQ(textOf("config/vellora/companion.conf"), "plain = yes\n");
  put("config/vellora/companion.conf", "plai = yes\n");
  const Result mistaken = run("songs");
  EXPECT_EQ(mistaken.status, 2);
  EXPECT_NE(mistaken.text.find("companion.conf:1: error: no setting is called \"plai\"; is "
                               "\"plain\" meant?"),
            std::string::npos)
      << mistaken.text;
  EXPECT_EQ(run("--help").status, 0);
}

// As behind "| head": what it has started and asked for ends with it.
TEST_F(Program, WithoutAReaderOfItsLinesItEndsInOrder) {
  put("songs/a.lrc", "");
  const std::string result =
      run("--version; mkfifo lines; true < lines & exec 3> lines; wait; "
          "timeout 60 " VELLORA_COMPANION " songs --plain --exchange x/Vellora >&3; echo $?")
          .text;
  EXPECT_TRUE(result.ends_with("\n0\n")) << result;
  EXPECT_TRUE(std::filesystem::exists(folder / "x/Vellora/snapshot.json"))
      << "the last one, which is switched off";
  EXPECT_FALSE(std::filesystem::exists(folder / "x/Vellora/sync.json"));
}

TEST_F(Program, FoldersThatAreNoneHaveStatusFive) {
  EXPECT_EQ(run("nowhere --exchange x/Vellora").status, 5);
  put("file", "");
  put("songs/a.lrc", "");
  EXPECT_EQ(run("songs --exchange file/Vellora").status, 5);
  EXPECT_EQ(run("next --exchange file/Vellora").status, 5);
}

TEST_F(Program, ASecondOneOnAFolderSaysWhoFeedsItAndEnds) {
  put("songs/a.lrc", "[00:01.00]a\n");
  // The first one is killed, so that it cannot tidy up.
  const Result result = run(
      "songs --exchange x/Vellora >first & "
      "timeout 60 sh -c 'until [ -e x/Vellora/sync.json ]; do sleep 0.05; done'; " VELLORA_COMPANION
      " songs --exchange x/Vellora 2>&1; echo status $?; "
      "kill -9 $(cat x/Vellora/companion.lock); wait");
  const std::string text = withoutFolder(result.text);
  std::string holder = textOf("x/Vellora/companion.lock");
  ASSERT_FALSE(holder.empty());
  holder.pop_back();
  EXPECT_EQ(text, "vellora-companion: x/Vellora is fed by another companion, process " + holder +
                      "; end that, or name another folder with --exchange\nstatus 6\n");
  EXPECT_EQ(run("songs --exchange x/Vellora", 3).status, 124) << "it works until it is ended";
}

TEST_F(Program, TellsAsJsonForPrograms) {
  put("songs/a\xFF.lrc", "[ti:T]\n[ar:A]\n[00:01.00]a\n[00:01.00]b\n");
  put("songs/b.lrc", "[00:01.00]\"c\"\n");
  const Result checked = run("check songs --json");
  EXPECT_EQ(checked.status, 1);
  const auto json = nlohmann::json::parse(checked.text);
  EXPECT_EQ(json["summary"],
            nlohmann::json::parse(R"({"songs": 2, "complete": 1, "errors": 0, "warnings": 1})"));
  EXPECT_EQ(json["problems"], nlohmann::json::array());
  ASSERT_EQ(json["songs"].size(), 2U);
  const auto& first = json["songs"][0];
  EXPECT_EQ(first["title"], "T");
  EXPECT_EQ(first["artist"], "A");
  EXPECT_EQ(first["file"], "songs/a\xEF\xBF\xBD.lrc") << "not UTF-8";
  EXPECT_EQ(first["translation"], "");
  EXPECT_EQ(first["lines"], 1);
  EXPECT_EQ(first["translated"], 1);
  EXPECT_EQ(first["complete"], true);
  const auto& problem = json["songs"][1]["problems"].at(0);
  EXPECT_EQ(problem["severity"], "warning");
  EXPECT_EQ(problem["line"], 0);
  EXPECT_EQ(problem["message"], "no line has a translation");
  EXPECT_NE(problem["advice"], "");

  const Result status = run("status --json --exchange x/Vellora");
  EXPECT_EQ(status.status, 3);
  EXPECT_EQ(nlohmann::json::parse(status.text),
            nlohmann::json::parse(R"({"folder": ")" + (folder / "x/Vellora").string() +
                                  R"(", "track": null, "overlay": null})"));
}

TEST_F(Program, AnOverlayThatASignalEndedHasNoSayAnyMore) {
  put("x/Vellora/status.json", R"({"message":"Following Music","stopped":false})");
  EXPECT_EQ(run("status --exchange x/Vellora").text.find("Following"), std::string::npos);
  put("x/Vellora/status.json", R"({"message":"Overlay stopped","stopped":true})");
  EXPECT_NE(run("status --exchange x/Vellora").text.find("overlay: Overlay stopped\n"),
            std::string::npos)
      << "one that has ended by itself has said so";
  put("songs/a.lrc", "[00:01.00]a\n");
  put("x/Vellora/status.json", R"({"message":"Following Music","stopped":false})");
  EXPECT_EQ(run("songs --exchange x/Vellora", 2).text.find("Following"), std::string::npos);
}

TEST_F(Program, SaysOnATerminalHowFarLongWorkIs) {
  put("songs/a.lrc", "[00:01.00]a\n");
  run("--help >/dev/null; script -qefc '" VELLORA_COMPANION " check songs >/dev/null' log");
  EXPECT_NE(textOf("log").find("\r0 of 1 songs checked\x1b[K\r\x1b[K"), std::string::npos)
      << textOf("log");
  EXPECT_EQ(run("check songs").text.find("songs checked"), std::string::npos) << "not elsewhere";
}

TEST_F(Program, WithoutATerminalItWritesPlainLines) {
  put("songs/a.lrc", "[00:01.00]a\n");
  const Result result = run("songs --exchange x/Vellora", 20);
  EXPECT_EQ(result.status, 124) << "timeout's own: it had to end the program";
  EXPECT_EQ(result.text, "nothing plays that the overlay tells of\n");
}

}  // namespace
}  // namespace vellora::companion
