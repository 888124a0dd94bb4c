// What a user chooses of a song while it plays.
#include <memory>
#include <utility>

#include "companion/exchange/keeper.h"
#include "companion/song/lrc.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

constexpr double begin = 1'000'000;

// Lyrics from elsewhere, at once.
class AtOnce final : public LyricsSource {
 public:
  void want(const std::optional<WantedSong>& song) override {
    if (song != wanted_) waits_ = song.has_value();
    wanted_ = song;
  }
  std::optional<FoundLyrics> step(double) override {
    if (!std::exchange(waits_, false)) return std::nullopt;
    return FoundLyrics{readLrc("there", "[00:01.00]from elsewhere\n"), "there"};
  }
  bool underWay(double) const override { return waits_; }
  std::string report() const override { return {}; }

 private:
  std::optional<WantedSong> wanted_;
  bool waits_ = false;
};

class Choosing : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    put("River Band - Night Drive.lrc", "[00:01.00]studio\n");
    put("River Band - Night Drive.de.lrc", "[00:01.00]deutsch\n");
    put("River Band - Night Drive.fr.lrc", "[00:01.00]français\n");
    put("live/River Band - Night Drive.lrc", "[00:01.00]live\n");
    put("River Band - Harbour.lrc", "[00:01.00]harbour\n");
    start("");
  }
  void start(const char* language) {
    keeper.emplace(Library(folder, language), CaptionSettings());
    step();
    while (keeper->busy()) step();
  }
  // "line/translation" of the snapshot that the choice brings at once.
  std::string step(const char* title = "Night Drive") {
    now += 0.01;
    const auto step = keeper->step(now, NowPlayingTrack(now, title, "River Band", "", 2, true));
    if (!step.snapshot || step.snapshot->lines.empty()) return {};
    const OverlayLine& line = step.snapshot->lines.front();
    return line.source + "/" + line.translation;
  }

  double now = begin;
  std::optional<Keeper> keeper;
};

TEST_F(Choosing, TheLyricsThatTheFolderHasFollowEachOther) {
  const std::string first = keeper->playing()->song.lines.front().source;
  EXPECT_EQ(first, "studio");
  EXPECT_EQ(keeper->chooseLyrics(1), "lyrics 2 of 2: River Band - Night Drive.lrc");
  EXPECT_EQ(step(), "live/");
  keeper->chooseLyrics(1);
  EXPECT_EQ(step(), "studio/deutsch");
  keeper->chooseLyrics(-1);
  EXPECT_EQ(step(), "live/");
}

TEST_F(Choosing, TheLanguagesAndTheOriginalFollowEachOther) {
  EXPECT_EQ(keeper->playing()->song.lines.front().translation, "deutsch");
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 2 of 3: fr");
  EXPECT_EQ(step(), "studio/français");
  EXPECT_EQ(keeper->chosenLanguage(), "fr");
  EXPECT_FALSE(keeper->playing()->song.open) << "no other language is to stand between";
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 3 of 3: none, the original alone");
  EXPECT_EQ(step(), "studio/");
  EXPECT_FALSE(keeper->playing()->song.open);
  EXPECT_EQ(keeper->chosenLanguage(), "fr") << "the original is no language of translations";
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 1 of 3: de");
  EXPECT_EQ(step(), "studio/deutsch");
  EXPECT_TRUE(keeper->playing()->song.open);
  keeper->chooseTranslation(-1);
  EXPECT_EQ(step(), "studio/");
}

TEST_F(Choosing, BeginsWithWhatTheSettingsAskFor) {
  start("fr");
  EXPECT_EQ(keeper->playing()->song.language, "fr");
  EXPECT_EQ(keeper->chooseTranslation(-1), "translation 1 of 3: de");
  EXPECT_EQ(step(), "studio/deutsch");
}

TEST_F(Choosing, IsKeptForTheSong) {
  keeper->chooseLyrics(1);
  step();
  EXPECT_EQ(step("Harbour"), "harbour/");
  EXPECT_EQ(step(), "live/");
  keeper->chooseLyrics(1);
  keeper->chooseTranslation(1);
  step();
  keeper->chooseTranslation(1);
  EXPECT_EQ(step(), "studio/français");
  step("Harbour");
  EXPECT_EQ(step(), "studio/français");
}

TEST_F(Choosing, AFileThatHasGoneIsNotWaitedFor) {
  keeper->chooseLyrics(1);
  EXPECT_EQ(step(), "live/");
  std::filesystem::remove_all(folder / "live");
  step("Harbour");
  while (keeper->busy()) step("Harbour");
  EXPECT_EQ(step(), "studio/deutsch");
}

TEST_F(Choosing, SaysWhereThereIsNothingToChoose) {
  step("Harbour");
  EXPECT_EQ(keeper->chooseLyrics(1), "there are no other lyrics of this song");
  EXPECT_EQ(keeper->chooseTranslation(1), "there is no translation of this song");
  EXPECT_EQ(step("Harbour"), "") << "nothing has changed, so nothing is written";
  EXPECT_NE(keeper->playing(), nullptr);
  step("Unknown");
  EXPECT_EQ(keeper->chooseLyrics(1), "there are no other lyrics of this song");
  EXPECT_EQ(keeper->chooseTranslation(1), "");
}

TEST_F(Choosing, WhoIsAskedElsewhereComesLast) {
  keeper->askElsewhere(std::make_unique<AtOnce>());
  keeper->chooseLyrics(1);
  EXPECT_EQ(step(), "live/");
  EXPECT_EQ(keeper->chooseLyrics(1), "lyrics 3 of 3: the lyrics service");
  EXPECT_EQ(step(), "from elsewhere/");
  EXPECT_EQ(keeper->playing()->source, "there");
  keeper->chooseLyrics(1);
  EXPECT_EQ(step(), "studio/deutsch");
  keeper->chooseLyrics(-1);
  EXPECT_EQ(step(), "from elsewhere/");
}

TEST_F(Choosing, TheLanguagesWithinAFileCountToo) {
  put("River Band - Within.ttml", R"(<tt xmlns="http://www.w3.org/ns/ttml"
    xmlns:ttm="http://www.w3.org/ns/ttml#metadata" xml:lang="en"><body><div>
    <p begin="1s">sung<span ttm:role="x-translation" xml:lang="de">deutsch</span><span
    ttm:role="x-translation" xml:lang="es">español</span></p></div></body></tt>)");
  start("es");
  EXPECT_EQ(step("Within"), "sung/español");
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 3 of 3: none, the original alone");
  EXPECT_EQ(step("Within"), "sung/");
  keeper->chooseTranslation(1);
  EXPECT_EQ(step("Within"), "sung/deutsch");
}

TEST_F(Choosing, ATranslationWithoutALanguageIsOne) {
  put("River Band - Plain.lrc", "[00:01.00]sung\n");
  put("River Band - Plain.translation.lrc", "[00:01.00]meant\n");
  start("");
  EXPECT_EQ(step("Plain"), "sung/meant");
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 2 of 2: none, the original alone");
  EXPECT_EQ(step("Plain"), "sung/");
  EXPECT_EQ(keeper->chooseTranslation(1), "translation 1 of 2: that of the files");
  EXPECT_EQ(step("Plain"), "sung/meant");
}

}  // namespace
}  // namespace vellora::companion
