#include <signal.h>

#include "base/files.h"
#include "companion/companion_desk.h"

namespace vellora::e2e {
namespace {

TEST_F(CompanionOnTheDesk, ALrcPairBecomesCaptionsOverThePlayer) {
  startCompanion();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); })) << "no captions came";
  ASSERT_TRUE(snapshot());
  EXPECT_EQ(snapshot()->musicTitle, "Au clair de la lune");
  EXPECT_EQ(snapshot()->musicArtist, "Traditionnel");
  EXPECT_TRUE(snapshot()->isUsable(now()));
  EXPECT_TRUE(said("Au clair de la lune — Traditionnel: 17 lines, 16 translated"));
  EXPECT_TRUE(waitFor([&] { return said("overlay: Following Music • "); }));
  EXPECT_TRUE(waitFor([&] { return said("Prête-moi ta plume — lend me your pen"); }));
  EXPECT_TRUE(captionsStandAsWritten());
}

TEST_F(CompanionOnTheDesk, SnapshotAndRequestStayFresh) {
  startCompanion();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); }));
  const double begin = now();
  bool stale = false;
  waitFor(
      [&] {
        const auto bytes = readWholeFile(exchange / syncRequestFileName);
        const auto request = bytes ? decode<SyncRequest>(*bytes) : std::nullopt;
        const auto written = snapshot();
        if (!request || now() - request->updatedAt > 6) stale = true;
        if (!written || now() - written->updatedAt > 3 || !written->enabled) stale = true;
        return stale;
      },
      8);
  EXPECT_FALSE(stale) << "after " << now() - begin << " s";
}

TEST_F(CompanionOnTheDesk, ASongThatIsNotInTheFolderSwitchesTheSnapshotOff) {
  std::filesystem::remove(songs / "song.lrc");
  startCompanion();
  startOverlay();
  EXPECT_TRUE(waitFor([&] { return said("Au clair de la lune — Traditionnel: no lyrics"); }));
  ASSERT_TRUE(waitFor([&] { return snapshot().has_value(); }));
  EXPECT_FALSE(snapshot()->enabled);
  EXPECT_TRUE(snapshot()->lines.empty());
}

TEST_F(CompanionOnTheDesk, AFileThatComesWhileTheSongPlaysIsTakenUp) {
  std::filesystem::rename(songs / "song.de.lrc", folder / "later.lrc");
  startCompanion();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return said("17 lines, 0 translated"); }));
  std::filesystem::rename(folder / "later.lrc", songs / "song.de.lrc");
  EXPECT_TRUE(waitFor([&] { return said("17 lines, 16 translated"); }));
  EXPECT_TRUE(waitFor([&] { return following(); }));
}

TEST_F(CompanionOnTheDesk, AtItsEndNothingGoesOn) {
  startCompanion();
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); }));
  companion->signal(SIGTERM);
  ASSERT_TRUE(waitFor([&] { return !companion->running(); }));
  EXPECT_EQ(companion->exitStatus(), 0);
  EXPECT_FALSE(snapshot()->enabled);
  EXPECT_FALSE(fileExists(exchange / syncRequestFileName));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

}  // namespace
}  // namespace vellora::e2e
