#include "library/song.h"

#include <fstream>

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

constexpr std::string_view lyrics =
    "[ti:T]\n[ar:A]\n[al:B]\n[la:en]\n[length:00:20]\n\n"
    "[00:01.00]one\n[00:05.00]♪\n[00:09.50]two\n";
constexpr std::string_view translation = "[la:fr]\n[00:01.00]un\n[00:09.50]deux\n";

TEST(Songs, LyricsAndTranslationMeetByTheirTimes) {
  const auto result = parseSong("library/x-song", lyrics, translation);
  ASSERT_TRUE(std::holds_alternative<Song>(result));
  const Song& song = std::get<Song>(result);
  EXPECT_EQ(song.slug, "x-song");
  EXPECT_EQ(song.title, "T");
  EXPECT_EQ(song.artist, "A");
  EXPECT_EQ(song.album, "B");
  EXPECT_EQ(song.language, "en");
  EXPECT_EQ(song.translationLanguage, "fr");
  EXPECT_DOUBLE_EQ(song.length, 20);
  ASSERT_EQ(song.lines.size(), 3U);
  EXPECT_EQ(song.lines[0].translation, "un");
  EXPECT_EQ(song.lines[1].translation, std::nullopt);
  EXPECT_DOUBLE_EQ(song.lines[2].time, 9.5);
  EXPECT_EQ(song.lines[2].translation, "deux");
}

std::string errorOf(std::string_view words, std::string_view meaning) {
  const auto result = parseSong("x", words, meaning);
  const auto* error = std::get_if<SongError>(&result);
  return error != nullptr ? error->text() : "none";
}

TEST(Songs, MistakesNameTheFile) {
  EXPECT_EQ(
      errorOf(lyrics, "[la:fr]\n[00:02.00]un\n"),
      "x/translation.lrc:2: warning: no line of the lyrics has the time [00:02.00] of \"un\"; give "
      "it the time of the line that it translates; the nearest is [00:01.00]");
  EXPECT_EQ(errorOf(lyrics, "[00:01.00]un\n"), "x/translation.lrc: error: tag \"la\" is missing");
  EXPECT_EQ(errorOf(lyrics, "[la:fr]\n"),
            "x/translation.lrc: error: no lines; a line of LRC reads [mm:ss.xx] and the text");
  EXPECT_EQ(errorOf("[ti:\xFF]\n[00:01.00]a\n", translation), "x/lyrics.lrc: error: not UTF-8");
  EXPECT_EQ(errorOf("[ti:T]\n[00:01.00]a\n", translation),
            "x/lyrics.lrc: error: tag \"ar\" is missing");
  EXPECT_EQ(errorOf("[ti:T]\n", translation),
            "x/lyrics.lrc: error: no lines; a line of LRC reads [mm:ss.xx] and the text");
  EXPECT_EQ(errorOf("[ti:T]\n[ar:A]\n[al:B]\n[la:en]\n[length:00:05]\n[00:05.00]a\n", translation),
            "x/lyrics.lrc:6: error: the line begins after the song's end");
  EXPECT_EQ(errorOf("[ti:T]\n[ar:A]\n[al:B]\n[la:en]\n[length:five]\n[00:01.00]a\n", translation),
            "x/lyrics.lrc: error: tag \"length\" is not of the form mm:ss");
}

TEST(Songs, TheSungLineIsTheLastThatHasBegun) {
  const Song song = std::get<Song>(parseSong("x", lyrics, translation));
  EXPECT_EQ(lineAt(song, 0.99), std::nullopt);
  EXPECT_EQ(lineAt(song, 1), 0U);
  EXPECT_EQ(lineAt(song, 9.49), 1U);
  EXPECT_EQ(lineAt(song, 9.5), 2U);
  EXPECT_EQ(lineAt(song, 100), 2U);
}

TEST(Songs, AreFoundByNumberTitleOrFolder) {
  std::vector<Song> songs(3);
  songs[0].slug = "first";
  songs[0].title = "First";
  songs[1].slug = "second";
  songs[1].title = "Café";
  songs[2].slug = "last-one";
  songs[2].title = "1";
  EXPECT_EQ(findSong(songs, "2"), 1U);
  EXPECT_EQ(findSong(songs, "Café"), 1U);
  EXPECT_EQ(findSong(songs, "last-one"), 2U);
  EXPECT_EQ(findSong(songs, "1"), 2U) << "a title goes before a number";
  for (const char* none : {"0", "4", "-1", "2x", "", "cafe"}) {
    EXPECT_EQ(findSong(songs, none), std::nullopt) << none;
  }
}

class SongFolders : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "vellora-songs-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  void write(const std::string& slug, std::string_view name, std::string_view text) {
    std::filesystem::create_directories(folder / slug);
    std::ofstream(folder / slug / name) << text;
  }
  std::string error() const {
    const auto result = loadSongs(folder);
    const auto* found = std::get_if<SongError>(&result);
    return found != nullptr ? found->text() : "none";
  }
  std::filesystem::path folder;
};

TEST_F(SongFolders, AreReadInTheOrderOfTheirNames) {
  for (const char* slug : {"b", "a", "c"}) {
    write(slug, "lyrics.lrc", lyrics);
    write(slug, "translation.lrc", translation);
  }
  std::ofstream(folder / "README.md") << "no song";
  const auto songs = std::get<std::vector<Song>>(loadSongs(folder));
  ASSERT_EQ(songs.size(), 3U);
  EXPECT_EQ(songs[0].slug + songs[1].slug + songs[2].slug, "abc");
}

TEST_F(SongFolders, WithAFileMissingAreRefused) {
  EXPECT_EQ(error(), folder.string() + ": error: holds no songs");
  write("a", "lyrics.lrc", lyrics);
  EXPECT_EQ(error(), (folder / "a" / "translation.lrc").string() + ": error: cannot be read");
  EXPECT_TRUE(std::holds_alternative<SongError>(loadSongs(folder / "nowhere")));
}

}  // namespace
}  // namespace vellora::demo
