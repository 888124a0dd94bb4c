// The program as a shell sees it: what it writes where no terminal is, and its exit statuses.
#include <array>
#include <cstdio>

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
    const std::string line = "cd " + folder.string() + " && timeout " + std::to_string(seconds) +
                             " " VELLORA_COMPANION " " + words + " 2>&1";
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
}

TEST_F(Program, FoldersThatAreNoneHaveStatusFive) {
  EXPECT_EQ(run("nowhere --exchange x/Vellora").status, 5);
  put("file", "");
  put("songs/a.lrc", "");
  EXPECT_EQ(run("songs --exchange file/Vellora").status, 5);
  EXPECT_EQ(run("next --exchange file/Vellora").status, 5);
}

TEST_F(Program, WithoutATerminalItWritesPlainLines) {
  put("songs/a.lrc", "[00:01.00]a\n");
  const Result result = run("songs --exchange x/Vellora", 5);
  EXPECT_EQ(result.status, 124) << "timeout's own: it had to end the program";
  EXPECT_EQ(result.text, "nothing plays that the overlay tells of\n");
}

}  // namespace
}  // namespace vellora::companion
