// Lyrics from a service, on a whole desktop: the songs' folder has none of what plays.
#include <algorithm>
#include <fstream>
#include <sstream>

#include <signal.h>

#include "companion/companion_desk.h"
#include "companion/service/lyrics_server.h"
#include "exchange/records/json_value.h"

namespace vellora::e2e {
namespace {

class Online : public CompanionOnTheDesk {
 protected:
  void SetUp() override {
    CompanionOnTheDesk::SetUp();
    std::filesystem::remove_all(songs);
    std::filesystem::create_directory(songs);
    environment["XDG_CACHE_HOME"] = (folder / "cache").string();
    serve("04-au-clair-de-la-lune", "Au clair de la lune", "Traditionnel");
  }
  // From then on the service has one of the demonstration's songs.
  void serve(const char* song, const std::string& title, const std::string& artist) {
    std::string record = R"([{"trackName":")" + title + R"(","artistName":")" + artist +
                         R"(","albumName":"","duration":100,"instrumental":false,)"
                         R"("plainLyrics":null,"syncedLyrics":)";
    appendJson(record, readText(std::filesystem::path(VELLORA_SONGS) / song / "lyrics.lrc"));
    server.put(record + "}]");
  }
  void startOnline(const std::string& manner = {}) {
    startCompanion({"--online", "--lyrics-server", server.base(manner)});
  }
  // How many lines of the companion hold this.
  std::size_t timesSaid(const std::string& part) const {
    std::istringstream lines(readText(folder / "companion.log"));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find(part) != std::string::npos) ++count;
    }
    return count;
  }

  LyricsServer server;
};

TEST_F(Online, NobodyIsAskedUnlessTheUserSaysSo) {
  startCompanion({"--lyrics-server", server.base()});
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said("Au clair de la lune — Traditionnel: no lyrics"); }));
  waitFor([&] { return server.requestCount() > 0; }, 2);
  EXPECT_EQ(server.requestCount(), 0U);
}

TEST_F(Online, WhatTheFolderLacksComesFromTheService) {
  startOnline();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said("17 lines, 0 translated, from " + server.name()); }));
  EXPECT_TRUE(said(server.name() + " is asked for lyrics that the folder lacks"))
      << "what is sent is said before anything is";
  EXPECT_TRUE(waitFor([&] { return said("the lyrics come from " + server.name()); }));
  EXPECT_TRUE(waitFor([&] { return said("] Prête-moi ta plume"); })) << "the view follows";
  EXPECT_NE(server.requests().find("/api/get?track_name=Au%20clair%20de%20la%20lune"),
            std::string::npos)
      << server.requests();
  EXPECT_NE(server.requests().find("\"agent\": \"Vellora/"), std::string::npos);
  // Lines without translations are no captions.
  ASSERT_TRUE(snapshot());
  EXPECT_FALSE(snapshot()->lines.empty());
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

// The whole road: a folder without lyrics, one command, and what the settings say.
TEST_F(Online, WithTheServiceAndATranslatorASongHasCaptions) {
  environment["XDG_CONFIG_HOME"] = (folder / "config").string();
  std::filesystem::create_directories(folder / "config/vellora");
  std::ofstream(folder / "config/vellora/companion.conf")
      << "lyrics = lrclib\ntranslator = " VELLORA_TRANSLATE_BY_APERTIUM " eng-spa\nlyrics-server = "
      << server.base() << "\n";
  player->stop();
  serve("06-paper-lanterns", "Paper Lanterns", "The Harbour Lights Society");
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "6", "--position", "5"}));
  startCompanion({"--language", "es"});
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said("from " + server.name()); }));
  EXPECT_TRUE(waitFor([&] { return following(); })) << "no captions came";
  EXPECT_TRUE(waitFor([&] { return said(" ≈ "); })) << "a program's translations are marked";
  EXPECT_TRUE(waitFor([&] {
    const auto written = snapshot();
    return written && std::ranges::any_of(written->lines, [](const OverlayLine& line) {
             return line.translation.find("Linternas, linternas") != std::string::npos;
           });
  }));
}

TEST_F(Online, WithoutANetworkWhatWasSaidBeforeServes) {
  startOnline();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said("17 lines, 0 translated"); }));
  companion->stop();
  server.stop();
  std::filesystem::remove(folder / "companion.log");
  startOnline();
  EXPECT_TRUE(waitFor([&] { return said("17 lines, 0 translated"); }));
  EXPECT_FALSE(said("cannot be reached"));
}

TEST_F(Online, WithoutANetworkItSaysSoOnceAndGoesOn) {
  server.stop();
  startOnline();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said(server.name() + " cannot be reached"); }));
  // A second question, two seconds later, fails as well. A file still serves.
  waitFor([] { return false; }, 4);
  EXPECT_EQ(timesSaid("cannot be reached"), 1U);
  std::ofstream(songs / "song.lrc") << "[ti:Au clair de la lune]\n[ar:Traditionnel]\n[00:01.00]a\n";
  EXPECT_TRUE(waitFor([&] { return said("1 line, 0 translated"); }));
}

TEST_F(Online, AnEndDuringARequestIsNoSlower) {
  startOnline("hang");
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return server.requestCount() == 1; }));
  companion->signal(SIGTERM);
  EXPECT_TRUE(waitFor([&] { return !companion->running(); }, 12)) << "the request takes fifteen";
  EXPECT_EQ(companion->exitStatus(), 0);
}

}  // namespace
}  // namespace vellora::e2e
