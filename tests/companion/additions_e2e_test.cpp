#include "companion/companion_desk.h"

namespace vellora::e2e {
namespace {

// What adds to the lines of songs, from the settings to the captions.
class AddedOnTheDesk : public CompanionOnTheDesk {
 protected:
  // Puts the demonstration's song into the folder and plays it.
  void play(const char* number, const std::string& name, bool translated) {
    player->stop();
    const auto song = std::filesystem::path(VELLORA_SONGS) / name;
    std::filesystem::remove(songs / "song.lrc");
    std::filesystem::remove(songs / "song.de.lrc");
    std::filesystem::copy_file(song / "lyrics.lrc", songs / "song.lrc");
    if (translated) std::filesystem::copy_file(song / "translation.lrc", songs / "song.de.lrc");
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", number, "--position", "5"}));
  }
  bool anyLineHas(const std::string& part) const {
    const auto written = snapshot();
    if (!written) return false;
    for (const OverlayLine& line : written->lines) {
      if (line.translation.find(part) != std::string::npos) return true;
    }
    return false;
  }
};

TEST_F(AddedOnTheDesk, ASongWithoutATranslationGetsApertiumsCaptions) {
  ASSERT_NO_FATAL_FAILURE(play("6", "06-paper-lanterns", false));
  startCompanion({"--language", "es", "--translator", VELLORA_TRANSLATE_BY_APERTIUM " eng-spa"});
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); })) << "no captions came";
  EXPECT_TRUE(waitFor([&] { return anyLineHas("Linternas, linternas"); }));
  EXPECT_TRUE(captionsStandAsWritten());
  EXPECT_TRUE(waitFor([&] { return said(" ≈ "); }));
}

TEST_F(AddedOnTheDesk, AReadingStandsAboveTheTranslationInItsCaption) {
  ASSERT_NO_FATAL_FAILURE(play("3", "03-sakura", true));
  startCompanion({"--reading", "auto"});
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); })) << "no captions came";
  EXPECT_TRUE(waitFor([&] { return anyLineHas("sakura sakura\n"); }));
  EXPECT_TRUE(captionsStandAsWritten());
}

}  // namespace
}  // namespace vellora::e2e
