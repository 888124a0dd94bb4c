#include "companion/exchange/keeper.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "base/files.h"
#include "companion/audio_files.h"
#include "companion/song/lrc.h"
#include "companion/song_folder.h"
#include "exchange/records/json.h"

namespace vellora::companion {
namespace {

constexpr double begin = 1'000'000;

class Keeping : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    put("River Band - Night Drive.lrc", "[00:01.00]a\n[00:02.00]♪\n[00:03.00]b\n");
    put("River Band - Night Drive.de.lrc", "[00:01.00]x\n");
    keeper.emplace(Library(folder, ""), CaptionSettings());
  }
  static NowPlayingTrack track(double at, const char* title = "NIGHT DRIVE") {
    return {at, title, "River Band", "Album", 5, true};
  }

  std::optional<Keeper> keeper;
};

TEST_F(Keeping, TheSnapshotNamesTheSongAsThePlayerDoes) {
  const auto step = keeper->step(begin, track(begin));
  ASSERT_TRUE(step.snapshot);
  EXPECT_TRUE(step.songChanged);
  EXPECT_TRUE(step.snapshot->isUsable(begin));
  EXPECT_EQ(step.snapshot->musicTitle, "NIGHT DRIVE");
  EXPECT_EQ(step.snapshot->musicArtist, "River Band");
  EXPECT_EQ(step.snapshot->fontSize, 26);
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"a", "x"}, {"b", ""}}));
}

TEST_F(Keeping, BothFilesStayFresh) {
  double lastSync = begin, lastSnapshot = begin;
  for (double now = begin; now < begin + 60; now += 0.1) {
    const auto step = keeper->step(now, track(now - 0.3));
    if (step.sync) {
      EXPECT_EQ(step.sync->updatedAt, now);
      lastSync = now;
    }
    if (step.snapshot) {
      EXPECT_EQ(step.snapshot->updatedAt, now);
      lastSnapshot = now;
    }
    ASSERT_LT(now - lastSync, 6);
    ASSERT_LT(now - lastSnapshot, 2);
  }
}

TEST_F(Keeping, WithoutASongTheSnapshotIsOff) {
  auto step = keeper->step(begin, std::nullopt);
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
  step = keeper->step(begin + 0.1, track(begin, "Other"));
  ASSERT_TRUE(step.snapshot) << "another track is told at once";
  EXPECT_FALSE(step.snapshot->enabled);
}

TEST_F(Keeping, APublicationThatIsNoLongerUsableSwitchesTheSnapshotOff) {
  keeper->step(begin, track(begin));
  EXPECT_FALSE(keeper->step(begin + 7.9, track(begin)).songChanged);
  const auto step = keeper->step(begin + 8, track(begin));
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
  EXPECT_EQ(keeper->playing(), nullptr);
}

TEST_F(Keeping, AClockThatIsSetBackKeepsNothingWaiting) {
  keeper->step(begin, track(begin));
  const auto step = keeper->step(begin - 1000, track(begin - 1000));
  EXPECT_TRUE(step.sync);
  EXPECT_TRUE(step.snapshot);
}

TEST_F(Keeping, ChangedFilesAreReadAgain) {
  keeper->step(begin, track(begin));
  put("River Band - Night Drive.de.lrc", "[00:01.00]x\n[00:03.00]another\n");
  EXPECT_FALSE(keeper->step(begin + 0.1, track(begin)).songChanged) << "not looked at yet";
  const auto step = keeper->step(begin + 2.1, track(begin + 2));
  EXPECT_TRUE(step.songChanged);
  ASSERT_TRUE(step.snapshot);
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"a", "x"}, {"b", "another"}}));
}

TEST_F(Keeping, ASongWithoutLyricsLeavesTheFolderClosed) {
  for (int i = 0; i < 5; ++i) put(std::to_string(i) + "/a.lrc", "[00:01.00]a\n");
  setTimes(static_cast<std::time_t>(begin) - 100);
  double now = begin;
  keeper->step(now, track(now, "Other"));
  while (keeper->busy()) keeper->step(now, track(now, "Other"));
  const auto before = keeper->library().work();
  EXPECT_EQ(before.folders, 6U);
  for (; now < begin + 60; now += 0.1) keeper->step(now, track(now, "Other"));
  EXPECT_EQ(keeper->library().work().folders, before.folders);
  EXPECT_EQ(keeper->library().work().files, before.files);
}

TEST_F(Keeping, LyricsThatComeWhileTheSongPlaysAreFound) {
  keeper->step(begin, track(begin, "Other"));
  EXPECT_EQ(keeper->playing(), nullptr);
  put("x/River Band - Other.lrc", "[00:01.00]a\n");
  double now = begin;
  for (; keeper->playing() == nullptr && now < begin + 10; now += 0.1) {
    keeper->step(now, track(now, "Other"));
  }
  ASSERT_NE(keeper->playing(), nullptr);
  EXPECT_LT(now, begin + 5);
}

TEST_F(Keeping, ASongIsFoundWhileTheFolderIsStillBeingRead) {
  for (int i = 0; i < 300; ++i) put("z" + std::to_string(i) + ".lrc", "[00:01.00]a\n");
  keeper.emplace(Library(folder, ""), CaptionSettings());
  const auto step = keeper->step(begin, track(begin));
  EXPECT_TRUE(keeper->busy());
  EXPECT_FALSE(keeper->library().complete());
  ASSERT_TRUE(step.snapshot);
  EXPECT_TRUE(step.snapshot->enabled);
  while (keeper->busy()) keeper->step(begin, track(begin));
  EXPECT_EQ(keeper->library().songs().size(), 301U);
}

TEST_F(Keeping, ASurerSongThatIsReadLaterIsTaken) {
  put("River Band - Other.lrc", "[00:01.00]by its name\n");
  for (int i = 0; i < 300; ++i) put("m" + std::to_string(i) + ".lrc", "[00:01.00]a\n");
  put("z.lrc", "[ti:Other]\n[ar:River Band]\n[00:01.00]by its tags\n");
  keeper.emplace(Library(folder, ""), CaptionSettings());
  keeper->step(begin, track(begin, "Other"));
  ASSERT_NE(keeper->playing(), nullptr);
  EXPECT_EQ(keeper->playing()->lines.front().source, "by its name");
  while (keeper->busy()) keeper->step(begin, track(begin, "Other"));
  EXPECT_EQ(keeper->playing()->lines.front().source, "by its tags");
}

TEST_F(Keeping, ASongThatGoesAwaySwitchesTheSnapshotOff) {
  keeper->step(begin, track(begin));
  std::filesystem::remove(folder / "River Band - Night Drive.lrc");
  std::filesystem::remove(folder / "River Band - Night Drive.de.lrc");
  const auto step = keeper->step(begin + 2.1, track(begin + 2));
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.snapshot->enabled);
}

// Lyrics from elsewhere, which the test gives.
class Elsewhere final : public LyricsSource {
 public:
  struct Box {
    std::optional<WantedSong> wanted;
    int changes = 0;
    std::optional<FoundLyrics> found;
    bool underWay = false;
  };
  explicit Elsewhere(Box& box) : box_(box) {}
  void want(const std::optional<WantedSong>& song) override {
    if (song == box_.wanted) return;
    box_.wanted = song;
    ++box_.changes;
  }
  std::optional<FoundLyrics> step(double) override {
    return std::exchange(box_.found, std::nullopt);
  }
  bool underWay(double) const override { return box_.underWay; }
  std::string report() const override { return {}; }

 private:
  Box& box_;
};

class AskingElsewhere : public Keeping {
 protected:
  void SetUp() override {
    Keeping::SetUp();
    keeper->askElsewhere(std::make_unique<Elsewhere>(box));
  }
  void give() {
    box.found = FoundLyrics{readLrc("lrclib.net", "[00:01.00]c\n[00:02.00]d\n"), "lrclib.net"};
  }

  Elsewhere::Box box;
};

TEST_F(AskingElsewhere, ASongOfTheFolderIsNotAskedFor) {
  keeper->step(begin, track(begin));
  EXPECT_EQ(box.wanted, std::nullopt);
  EXPECT_EQ(keeper->playing()->source, "");
}

TEST_F(AskingElsewhere, ASongThatTheFolderLacksIsAskedForAndShownAtOnceWhenItComes) {
  keeper->step(begin, track(begin, "Other"));
  EXPECT_EQ(box.wanted, (WantedSong{"Other", "River Band", "Album", std::nullopt}));
  EXPECT_EQ(keeper->playing(), nullptr);
  EXPECT_FALSE(keeper->step(begin + 0.1, track(begin, "Other")).snapshot);
  give();
  const auto step = keeper->step(begin + 0.2, track(begin, "Other"));
  EXPECT_TRUE(step.songChanged);
  ASSERT_TRUE(step.snapshot);
  EXPECT_TRUE(step.snapshot->enabled);
  EXPECT_EQ(step.snapshot->musicTitle, "Other");
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"c", ""}, {"d", ""}}));
  EXPECT_EQ(keeper->playing()->source, "lrclib.net");
  EXPECT_EQ(keeper->playing()->from.label(), "Other — River Band");
}

TEST_F(AskingElsewhere, TheAudioFileTellsWhatThePlayerDoesNot) {
  put("a.flac", flac(
                    [](TagLib::Ogg::XiphComment& to) {
                      to.setTitle("Other");
                      to.setArtist("River Band");
                      to.setAlbum("Roads");
                    },
                    61));
  const NowPlayingTrack other{begin, "Other", "River Band", "", 5, true};
  keeper->step(begin, other);
  ASSERT_FALSE(keeper->busy());
  EXPECT_EQ(box.wanted, (WantedSong{"Other", "River Band", "Roads", 61}));
  std::filesystem::remove(folder / "a.flac");
  keeper->step(begin + 0.1, other);
  EXPECT_EQ(box.changes, 1) << "it is opened once for a track";
}

TEST_F(AskingElsewhere, WhatHasComeStaysWhileTheFolderIsLookedAt) {
  keeper->step(begin, track(begin, "Other"));
  give();
  keeper->step(begin + 0.1, track(begin, "Other"));
  const auto step = keeper->step(begin + 2.2, track(begin + 2, "Other"));
  EXPECT_FALSE(step.songChanged);
  ASSERT_NE(keeper->playing(), nullptr);
  EXPECT_EQ(keeper->playing()->lines.size(), 2U);
  EXPECT_EQ(box.changes, 1) << "and it is not asked for again";
}

TEST_F(AskingElsewhere, AFileThatComesIntoTheFolderTakesItsPlace) {
  keeper->step(begin, track(begin, "Other"));
  give();
  keeper->step(begin + 0.1, track(begin, "Other"));
  put("River Band - Other.lrc", "[00:01.00]own\n");
  const auto step = keeper->step(begin + 2.2, track(begin + 2, "Other"));
  EXPECT_TRUE(step.songChanged);
  EXPECT_EQ(keeper->playing()->source, "");
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"own", ""}}));
  EXPECT_EQ(box.wanted, std::nullopt);
}

TEST_F(AskingElsewhere, AnotherSongForgetsIt) {
  keeper->step(begin, track(begin, "Other"));
  give();
  keeper->step(begin + 0.1, track(begin, "Other"));
  keeper->step(begin + 0.2, track(begin, "Third"));
  EXPECT_EQ(keeper->playing(), nullptr);
  EXPECT_EQ(box.wanted->title, "Third");
  const auto step = keeper->step(begin + 0.3, std::nullopt);
  EXPECT_FALSE(step.snapshot->enabled);
  EXPECT_EQ(box.wanted, std::nullopt);
}

TEST_F(Keeping, SettingsAreBoundedAndWrittenAtOnce) {
  keeper->step(begin, track(begin));
  CaptionSettings settings;
  settings.changeFontSize(1000);
  settings.changeOffset(-1000);
  keeper->setSettings(settings);
  const auto step = keeper->step(begin + 0.1, track(begin));
  ASSERT_TRUE(step.snapshot);
  EXPECT_EQ(step.snapshot->fontSize, 96);
  EXPECT_EQ(step.snapshot->verticalOffset, -400);
  settings.shown = false;
  keeper->setSettings(settings);
  EXPECT_FALSE(keeper->step(begin + 0.2, track(begin)).snapshot->enabled);
}

TEST_F(Keeping, AHugeSongStaysWithinWhatTheOverlayReads) {
  // Each quote takes two bytes in JSON: twenty million in all.
  const std::string quotes(999, '"');
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "a" + quotes + "\tb" + quotes + "\n";
  put("River Band - Huge.tsv", text);
  const auto step = keeper->step(begin, track(begin, "Huge"));
  ASSERT_TRUE(step.snapshot);
  ASSERT_FALSE(step.snapshot->lines.empty());
  EXPECT_LT(encode(*step.snapshot)->size(), largestReadableFile);
}

constexpr double later = begin + 1;

// Gives each line a reading later.
class LateReadings : public SongAddition {
 public:
  explicit LateReadings(std::vector<std::string>& log) : log_(log) {}

  void begin(Song& song) override {
    log_.push_back("begin " + std::filesystem::path(song.name).filename().string());
  }
  void drop() override { log_.push_back("drop"); }
  bool step(double now, Song& song) override {
    if (now < later || !song.lines.front().reading.empty()) return false;
    for (SongLine& line : song.lines) line.reading = "read " + line.source;
    return true;
  }
  bool underWay() const override { return false; }
  std::string notice() const override { return "told"; }

 private:
  std::vector<std::string>& log_;
};

TEST_F(Keeping, WhatIsAddedToTheLinesReachesTheSnapshotAtOnce) {
  std::vector<std::string> log;
  keeper->add(std::make_unique<LateReadings>(log));
  auto step = keeper->step(begin, track(begin));
  EXPECT_EQ(log, (std::vector<std::string>{"begin River Band - Night Drive.lrc"}));
  EXPECT_EQ(step.snapshot->lines.front(), (OverlayLine{"a", "x"}));
  EXPECT_FALSE(keeper->step(begin + 0.9, track(begin)).snapshot);
  step = keeper->step(begin + 1, track(begin));
  ASSERT_TRUE(step.snapshot);
  EXPECT_FALSE(step.songChanged);
  EXPECT_EQ(step.snapshot->lines, (std::vector<OverlayLine>{{"a", "read a\nx"}, {"b", "read b"}}));
  EXPECT_EQ(keeper->notice(), "told");
  keeper->step(begin + 1.1, track(begin + 1.1, "Other"));
  EXPECT_EQ(log.back(), "drop");
}

TEST_F(Keeping, ReadingsStandAloneWhereThatIsWanted) {
  std::vector<std::string> log;
  CaptionSettings settings;
  settings.reading = ReadingPlace::alone;
  Keeper alone(Library(folder, ""), settings);
  alone.add(std::make_unique<LateReadings>(log));
  alone.step(begin, track(begin));
  const auto step = alone.step(begin + 1, track(begin));
  ASSERT_TRUE(step.snapshot);
  EXPECT_EQ(step.snapshot->lines.front(), (OverlayLine{"a", "read a"}));
}

}  // namespace
}  // namespace vellora::companion
