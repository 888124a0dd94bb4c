// From "I have music" to captions: a folder of tagged audio files without lyrics, two lines of
// settings, one command.
#include <algorithm>
#include <fstream>

#include "companion/audio_files.h"
#include "companion/companion_desk.h"
#include "companion/service/lyrics_server.h"
#include "exchange/records/json_value.h"

namespace vellora::e2e {
namespace {

// In two languages, so that Apertium and a reader of scripts have both something to do.
constexpr const char* lyrics =
    "[00:01.00]さくら さくら, good morning to the sea\n"
    "[00:04.50]Привет, the moon is white\n"
    "[00:08.00]The river is cold, はる\n"
    "[00:11.50]The red boats are in the bay\n"
    "[00:15.00]Ночь, the street is dark\n"
    "[00:18.50]The house is old, the garden is green\n";

class TaggedSongs : public CompanionOnTheDesk {
 protected:
  void SetUp() override {
    CompanionOnTheDesk::SetUp();
    player->stop();
    std::filesystem::remove_all(songs);
    put(songs / "01.flac", sound("Spring at the Harbour", 40));
    put(songs / "02.flac", sound("Another Song", 50));
    for (const char* const title : {"Spring at the Harbour", "Another Song"}) {
      const std::filesystem::path song = folder / "library" / title;
      put(song / "lyrics.lrc", "[ti:" + std::string(title) +
                                   "]\n[ar:The Harbour Lights Society]\n[al:Two Tongues]\n"
                                   "[la:en]\n[length:00:40]\n" +
                                   lyrics);
      put(song / "translation.lrc", "[la:es]\n[00:01.00]-\n");
    }
    put(folder / "config/vellora/companion.conf",
        "lyrics = lrclib\ntranslator = " VELLORA_TRANSLATE_BY_APERTIUM " eng-spa\n");
    environment["XDG_CONFIG_HOME"] = (folder / "config").string();
    environment["XDG_CACHE_HOME"] = (folder / "cache").string();
    std::string record = R"([{"trackName":"Spring at the Harbour",)"
                         R"("artistName":"The Harbour Lights Society","albumName":"Two Tongues",)"
                         R"("duration":40,"instrumental":false,"plainLyrics":null,)"
                         R"("syncedLyrics":)";
    appendJson(record, std::string_view(lyrics));
    server.put(record + "}]");
    ASSERT_NO_FATAL_FAILURE(play("Spring at the Harbour"));
  }

  void play(const char* title) {
    if (player) player->stop();
    startPlayer({"--library", folder / "library", "--song", title, "--position", "5", "--paused"});
  }

  static std::string sound(const char* title, unsigned seconds) {
    return companion::flac(
        [&](TagLib::Ogg::XiphComment& comments) {
          comments.setTitle(title);
          comments.setArtist("The Harbour Lights Society");
          comments.setAlbum("Two Tongues");
        },
        seconds);
  }
  static void put(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }
  // Whether the captions stand on the screen as written, and these are among them.
  bool captioned(const std::vector<std::string>& captions) const {
    const auto written = snapshot();
    return written && captionsRight() && std::ranges::all_of(captions, [&](const auto& caption) {
             return std::ranges::find(written->lines, caption, &OverlayLine::translation) !=
                    written->lines.end();
           });
  }

  std::string textOf(const char* file) const {
    return readWholeFile(folder / file).value_or("nothing");
  }

  LyricsServer server;
};

TEST_F(TaggedSongs, HaveCaptionsByOneCommandAndTwoLinesOfSettings) {
  startCompanion({"--overlay", "--lyrics-server", server.base()});
  EXPECT_TRUE(waitFor([&] {
    return captioned({"さくら さくら, buenos días al mar", "Привет, la luna es blanca",
                      "La casa es vieja, el jardín es verde"});
  })) << textOf("Vellora/snapshot.json");
  EXPECT_TRUE(said("no lyrics in the folder"));
  EXPECT_TRUE(said("6 lines, 0 translated, from " + server.name()));
  EXPECT_NE(server.requests().find("&album_name=Two%20Tongues&duration=40\""), std::string::npos)
      << server.requests();
}

TEST_F(TaggedSongs, HaveReadingsAboveTheTranslations) {
  startCompanion({"--overlay", "--reading", "auto", "--lyrics-server", server.base()});
  EXPECT_TRUE(waitFor([&] {
    return captioned({"sakura sakura, good morning to the sea\nさくら さくら, buenos días al mar",
                      "Privet, the moon is white\nПривет, la luna es blanca",
                      "La casa es vieja, el jardín es verde"});
  })) << textOf("Vellora/snapshot.json");
}

// What was said before serves on; what was not is missed in one sentence, and the rest goes on.
TEST_F(TaggedSongs, KeepTheirCaptionsUnplugged) {
  startCompanion({"--overlay", "--lyrics-server", server.base()});
  ASSERT_TRUE(waitFor([&] { return captioned({"La casa es vieja, el jardín es verde"}); }));
  companion->stop();
  server.stop();
  ASSERT_NO_FATAL_FAILURE(play("Another Song"));
  startCompanion({"--overlay", "--lyrics-server", server.base()});
  EXPECT_TRUE(waitFor([&] { return said(server.name() + " cannot be reached"); }));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
  ASSERT_NO_FATAL_FAILURE(play("Spring at the Harbour"));
  EXPECT_TRUE(waitFor([&] { return captioned({"La casa es vieja, el jardín es verde"}); }));
}

}  // namespace
}  // namespace vellora::e2e
