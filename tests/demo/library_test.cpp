// The songs that come with the player.
#include <set>

#include <gtest/gtest.h>

#include "library/song.h"
#include "matching/normalization.h"
#include "matching/translation.h"

namespace vellora::demo {
namespace {

class Library : public testing::Test {
 protected:
  void SetUp() override {
    auto loaded = loadSongs(VELLORA_DEMO_SONGS);
    if (const auto* error = std::get_if<SongError>(&loaded)) FAIL() << error->text();
    songs = std::get<std::vector<Song>>(std::move(loaded));
  }
  std::vector<Song> songs;
};

bool isMusicOnly(const std::string& text) {
  return text.find_first_not_of("♪♫ ") == std::string::npos;
}

TEST_F(Library, HasAtLeastSixSongsInFourLanguages) {
  EXPECT_GE(songs.size(), 6U);
  std::set<std::string> languages;
  for (const Song& song : songs) languages.insert(song.language);
  for (const char* language : {"zh-Hant", "ja", "fr", "de", "en", "ar"}) {
    EXPECT_TRUE(languages.contains(language)) << language;
  }
}

TEST_F(Library, EachSongLastsFortyToNinetySecondsWithTenLinesOrMore) {
  for (const Song& song : songs) {
    SCOPED_TRACE(song.slug);
    EXPECT_GE(song.length, 40);
    EXPECT_LE(song.length, 90);
    EXPECT_GE(song.lines.size(), 10U);
    EXPECT_NE(song.language, song.translationLanguage);
    for (std::size_t i = 0; i < song.lines.size(); ++i) {
      const double end = i + 1 < song.lines.size() ? song.lines[i + 1].time : song.length;
      EXPECT_GE(end - song.lines[i].time, 2) << song.lines[i].text;
      EXPECT_LE(end - song.lines[i].time, 7) << song.lines[i].text;
    }
  }
}

TEST_F(Library, EveryLineHasAKeyUnlessItIsMusicOnly) {
  for (const Song& song : songs) {
    for (const SongLine& line : song.lines) {
      EXPECT_EQ(OverlayMatching::normalized(line.text).empty(), isMusicOnly(line.text))
          << song.slug << ": " << line.text;
      if (isMusicOnly(line.text)) {
        EXPECT_EQ(line.translation, std::nullopt) << song.slug;
      }
    }
  }
}

TEST_F(Library, EachRowFindsItsOwnTranslation) {
  for (const Song& song : songs) {
    std::vector<OverlayLine> lines;
    for (const SongLine& line : song.lines) {
      lines.push_back({line.text, line.translation.value_or("")});
    }
    for (const SongLine& line : song.lines) {
      EXPECT_EQ(OverlayMatching::translation(line.text, lines), line.translation)
          << song.slug << ": " << line.text;
    }
  }
}

TEST_F(Library, TitlesTellTheSongsApart) {
  std::set<std::string> keys;
  for (const Song& song : songs) keys.insert(OverlayMatching::normalized(song.title));
  EXPECT_EQ(keys.size(), songs.size());
  EXPECT_FALSE(keys.contains(""));
  for (const Song& song : songs) {
    EXPECT_EQ((song.title + song.artist + song.album).find('|'), std::string::npos) << song.slug;
  }
}

TEST_F(Library, ShowsLinesWithoutTranslationAndAnEmoji) {
  bool untranslated = false;
  bool emoji = false;
  for (const Song& song : songs) {
    for (const SongLine& line : song.lines) {
      untranslated = untranslated || (!line.translation && !isMusicOnly(line.text));
      emoji = emoji || line.text.find("🏮") != std::string::npos;
    }
  }
  EXPECT_TRUE(untranslated);
  EXPECT_TRUE(emoji);
}

}  // namespace
}  // namespace vellora::demo
