#include <fstream>

#include <sys/stat.h>

#include "base/files.h"
#include "e2e/desk.h"
#include "exchange/records/json.h"

namespace vellora::e2e {
namespace {

class LifeOnTheDesk : public Desk {
 protected:
  // Registers the scheme for this session's user, as an installation does for all.
  void registerScheme() {
    const std::filesystem::path data = std::getenv("XDG_DATA_HOME");
    const std::filesystem::path applications = data / "applications";
    std::filesystem::create_directories(applications);
    std::ifstream installed(std::filesystem::path(VELLORA_PACKAGING) /
                            "vellora-url-handler.desktop");
    ASSERT_TRUE(installed.is_open());
    std::ofstream entry(applications / "vellora-url-handler.desktop");
    for (std::string line; std::getline(installed, line);) {
      if (line.starts_with("Exec=")) line = "Exec=" VELLORA_OPEN_PROGRAM " %u";
      if (line.starts_with("TryExec=")) continue;
      entry << line << "\n";
    }
    entry.close();
    outputOf({"update-desktop-database", applications});
    outputOf(
        {"xdg-mime", "default", "vellora-url-handler.desktop", "x-scheme-handler/tessaly-overlay"});
  }
};

TEST_F(LifeOnTheDesk, AUrlOpenedThroughTheDesktopMovesTheExchangeFolder) {
  ASSERT_NO_FATAL_FAILURE(registerScheme());
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return statusIs("Waiting for fresh lyrics from Tessaly"); }));
  const std::filesystem::path other = folder / "another place é" / "Vellora";
  std::filesystem::create_directories(other);
  std::string url = "tessaly-overlay://x?snapshot=" + folder.string() +
                    "/another%20place%20%C3%A9/Vellora/snapshot.json";
  const std::filesystem::path before = exchange;
  useExchange(other);
  outputOf({"gio", "open", url});
  EXPECT_TRUE(waitFor([&] { return statusIs("Waiting for fresh lyrics from Tessaly"); }))
      << "no status in the new folder";
  // The old folder is left alone from here on.
  removeFile(before / statusFileName);
  keepSync();
  EXPECT_TRUE(waitFor([&] { return statusIs("Following Music for Tessaly"); }));
  EXPECT_FALSE(fileExists(before / statusFileName));
}

TEST_F(LifeOnTheDesk, OpeningAUrlStartsAnOverlayWhereNoneRuns) {
  ASSERT_NO_FATAL_FAILURE(registerScheme());
  std::string url = "tessaly-overlay://x?snapshot=" + (exchange / "snapshot.json").string();
  Process open({"gio", "open", url}, folder / "open.log");
  EXPECT_TRUE(waitFor([&] { return status().has_value(); })) << "no overlay came up";
  // It has no folder to be asked through any more once the snapshot stays away; it ends by itself.
  EXPECT_TRUE(waitFor([&] { return status() && status()->stopped; }));
}

TEST_F(LifeOnTheDesk, EndsByItselfFifteenSecondsAfterTheLastSnapshot) {
  startOverlay();
  const double started = now();
  ASSERT_TRUE(waitFor([&] { return statusIs("Waiting for fresh lyrics from Tessaly"); }));
  ASSERT_TRUE(waitFor([&] { return !overlay->running(); })) << "it goes on and on";
  EXPECT_GE(now() - started, 14.9);
  EXPECT_EQ(overlay->exitStatus(), 0);
  ASSERT_TRUE(status());
  EXPECT_EQ(status()->message, "Overlay stopped");
  EXPECT_TRUE(status()->stopped);
}

TEST_F(LifeOnTheDesk, StaysWhileSyncIsActive) {
  keepSync();
  startOverlay();
  const double started = now();
  waitFor([&] { return now() - started > 19; });
  EXPECT_TRUE(overlay->running());
  EXPECT_TRUE(statusIs("Following Music for Tessaly"));
  dropSync();
  EXPECT_TRUE(waitFor([&] { return !overlay->running(); }));
}

TEST_F(LifeOnTheDesk, AFifoInTheSnapshotsPlaceDoesNotHoldItUp) {
  ASSERT_EQ(mkfifo((exchange / "snapshot.json").c_str(), 0600), 0);
  startOverlay();
  EXPECT_TRUE(waitFor([&] { return statusIs("Waiting for fresh lyrics from Tessaly"); }));
}

TEST_F(LifeOnTheDesk, EndsAtOnceWhenItIsAskedTo) {
  keepSync();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return status().has_value(); }));
  overlay->signal(SIGTERM);
  EXPECT_TRUE(waitFor([&] { return !overlay->running(); }));
  EXPECT_EQ(overlay->exitStatus(), 0);
}

}  // namespace
}  // namespace vellora::e2e
