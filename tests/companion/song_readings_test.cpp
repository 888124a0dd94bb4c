#include "companion/readings/song_readings.h"

#include <chrono>
#include <thread>

#include <gmock/gmock.h>

namespace vellora::companion {
namespace {

Song songOf(const std::vector<std::string>& lines) {
  Song song;
  for (const std::string& line : lines) song.lines.push_back({{}, line, {}, 1, {}});
  return song;
}

// Until the first line has a reading.
bool comes(SongReadings& readings, Song& song) {
  for (int i = 0; i < 3000; ++i) {
    readings.step(0, song);
    if (!song.lines.front().reading.empty()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

TEST(SongReadings, FillTheSongsLines) {
  SongReadings readings(ReadingKind::automatic);
  Song song = songOf({"你好", "Hello"});
  readings.begin(song);
  ASSERT_TRUE(comes(readings, song));
  EXPECT_EQ(song.lines[0].reading, "nǐ hǎo");
  EXPECT_EQ(song.lines[1].reading, "");
  EXPECT_FALSE(readings.step(0, song)) << "once is enough";
}

TEST(SongReadings, ASongThatIsBeingReadGivesWayToTheNext) {
  SongReadings readings(ReadingKind::automatic);
  Song first = songOf(std::vector<std::string>(5000, "音乐响起来了，我们一起唱歌"));
  readings.begin(first);
  Song second = songOf(std::vector<std::string>(5000, "나"));
  readings.begin(second);
  ASSERT_TRUE(comes(readings, second));
  EXPECT_EQ(second.lines.front().reading, "na");
}

TEST(SongReadings, EndWithoutReadingTheSongToItsEnd) {
  Song song = songOf(std::vector<std::string>(20000, "音乐响起来了，我们一起唱歌"));
  SongReadings readings(ReadingKind::automatic);
  readings.begin(song);
  EXPECT_EQ(song.lines.front().reading, "");
}

TEST(SongReadings, SayOnceWhatIsMissing) {
  SongReadings readings(ReadingKind::romaji, "/nowhere");
  EXPECT_EQ(readings.notice(), "");
  Song song = songOf({"さくら", "桜"});
  readings.begin(song);
  ASSERT_TRUE(comes(readings, song));
  EXPECT_THAT(readings.notice(), testing::HasSubstr("mecab-ipadic-utf8"));
  readings.drop();
  EXPECT_EQ(readings.notice(), "");
  Song other = songOf({"かな"});
  readings.begin(other);
  ASSERT_TRUE(comes(readings, other));
  EXPECT_EQ(readings.notice(), "");
}

TEST(CaptionText, HasTheReadingAboveTheTranslationOrAlone) {
  SongLine line{{}, "你好", "hello", 1, "nǐ hǎo"};
  EXPECT_EQ(captionText(line, ReadingPlace::above), "nǐ hǎo\nhello");
  EXPECT_EQ(captionText(line, ReadingPlace::alone), "nǐ hǎo");
  line.translation.clear();
  EXPECT_EQ(captionText(line, ReadingPlace::above), "nǐ hǎo");
  line = {{}, "Hello", "Hallo", 1, {}};
  EXPECT_EQ(captionText(line, ReadingPlace::alone), "Hallo");
}

}  // namespace
}  // namespace vellora::companion
