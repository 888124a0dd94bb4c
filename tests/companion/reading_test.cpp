#include "companion/lyrics/reading.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "companion/lines_text.h"

namespace vellora::companion {
namespace {

class Reading : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = "/tmp/vellora-reading-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::string problemOf(const std::string& name) const {
    const LyricFile file = readLyricFile(folder / name, "");
    EXPECT_TRUE(file.lines.empty());
    EXPECT_EQ(file.problems.size(), 1U);
    const std::string text = textOf(file.problems);
    return text.substr(std::min(text.size(), folder.string().size() + 1));
  }

  std::filesystem::path folder;
};

TEST_F(Reading, TheEndingSaysTheFormat) {
  EXPECT_EQ(textOf(readLyrics("a.LRC", "[00:01.00]a", "")), "100 a");
  EXPECT_EQ(textOf(readLyrics("a.srt", "00:00:01,0 --> x\na", "")), "100 a");
  EXPECT_EQ(textOf(readLyrics("a.ttml", "<p begin='1s'>a</p>", "")), "100 a");
  EXPECT_EQ(textOf(readLyrics("a.po", "msgid \"a\"\nmsgstr \"b\"", "")), "a=b");
  EXPECT_EQ(textOf(readLyrics("a.tsv", "a\tb", "")), "a=b");
  EXPECT_EQ(textOf(readLyrics("a.txt", "[00:01.00]a", "")), "[00:01.00]a");
  EXPECT_EQ(readableEnding("a.mp3"), "");
  EXPECT_EQ(readableEnding("lrc"), "");
}

TEST_F(Reading, WhatCannotBeReadIsToldApart) {
  std::filesystem::create_directory(folder / "folder.lrc");
  mkfifo((folder / "pipe.lrc").c_str(), 0600);
  std::ofstream(folder / "noise.lrc") << std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0", 17);
  std::ofstream(folder / "huge.lrc").close();
  std::filesystem::resize_file(folder / "huge.lrc", std::uintmax_t{16} * 1024 * 1024 + 1);
  const std::string unreadable =
      ": error: cannot be read; is it an ordinary file, and may you read it?";
  EXPECT_EQ(problemOf("missing.lrc"), "missing.lrc" + unreadable);
  EXPECT_EQ(problemOf("folder.lrc"), "folder.lrc" + unreadable);
  EXPECT_EQ(problemOf("pipe.lrc"), "pipe.lrc" + unreadable);
  EXPECT_EQ(problemOf("noise.lrc"),
            "noise.lrc: error: not a text in any encoding that is known; save it as UTF-8");
  EXPECT_EQ(problemOf("huge.lrc"),
            "huge.lrc: error: larger than 16 MiB; no song's lyrics are; it is left out");
}

TEST_F(Reading, AFileOfAnotherEncodingIsConverted) {
  EXPECT_EQ(textOf(readLyrics("a.txt", "\xFF\xFE\x60\x4F\x7D\x59", "")), "你好");
}

TEST_F(Reading, AMereGuessIsTold) {
  const LyricFile file = readLyrics("a.txt", "d\xE9j\xE0", "");
  ASSERT_EQ(file.problems.size(), 1U);
  EXPECT_NE(file.problems[0].text().find("which is no more than a guess"), std::string::npos)
      << textOf(file.problems);
}

}  // namespace
}  // namespace vellora::companion
