#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/rect.h"
#include "e2e/process.h"
#include "e2e/written_files.h"
#include "exchange/records/records.h"
#include "witness/accessible_rows.h"
#include "witness/captions_seen.h"
#include "witness/screen.h"

namespace vellora::e2e {

// A test on a whole desktop: the session that it runs in (scripts/session starts one for each
// test), the stand-in player, the overlay, and the test itself in the companion's place.
class Desk : public testing::Test {
 protected:
  void SetUp() override;
  // Every file that any program put into the exchange folder must satisfy its schema. A failed test
  // leaves its logs, its exchange files and a screenshot in test-output/.
  void TearDown() override;

  void startPlayer(std::vector<std::string> options = {});
  void startOverlay(std::vector<std::string> options = {});

  // Waits, a minute at most unless said otherwise, and renews what `keep…` asked for meanwhile.
  bool waitFor(const std::function<bool()>& condition, double seconds = 60);

  // The companion's side. While kept, both files are rewritten twice a second by `waitFor`.
  void keepSnapshot(OverlaySnapshot snapshot);
  void keepSync();
  void dropSnapshot();
  void dropSync();
  // From now on the test looks into this folder, which must exist.
  void useExchange(const std::filesystem::path& other);
  void send(const MusicCommand& command) const;
  // The snapshot of the demonstration's song: its lines as the player shows them and translations
  // that the test makes up ("<number> of the translation").
  OverlaySnapshot snapshotOfPlayer() const;

  // What stands in the exchange folder.
  std::optional<OverlaySnapshot> snapshot() const;
  std::optional<OverlayStatus> status() const;
  std::optional<NowPlayingTrack> nowPlaying() const;
  bool statusIs(const std::string& message) const;
  bool following() const;  // "Following Music • …"

  // The player as the witness sees it, and the class of its window: the stand-in player's.
  virtual std::optional<witness::SeenPlayer> seenPlayer() const;
  virtual std::string windowClass() const;
  // A camera for the session's screen; null where there is none. Takes the pointer out of its way.
  virtual std::unique_ptr<witness::Screen> openScreen();

  // Has the paused player play on at 30 s, where its rows stand elsewhere, and pauses it there.
  void scrollThePlayer();
  // Moves the captions up over the rows, and waits until one hides part of a row below the middle:
  // a click on that row then goes through its plate. The row's place; nothing where none comes.
  std::optional<Rect> putAPlateOverARow();
  // Has the snapshot tell of a song that is not played.
  void keepSnapshotOfAnotherSong();

  // What stands on the screen now, by the witness; nothing while the rows move.
  std::optional<witness::CaptionsVerdict> look() const;
  bool captionsRight() const;
  // No pixel of the player's window differs from its own picture.
  bool nothingOverPlayer() const;

  static double now();
  // How many seconds the clock of the started programs is ahead of `now()`: what is kept is dated
  // by it.
  double clockAhead = 0;
  std::filesystem::path folder;    // of the test
  std::filesystem::path exchange;  // the exchange folder in use
  // What player and overlay are started with beside the test's own environment.
  std::map<std::string, std::string> environment;
  std::unique_ptr<Process> player;
  std::unique_ptr<Process> overlay;
  std::unique_ptr<witness::Screen> screen;
  std::unique_ptr<WrittenFiles> writtenFiles;  // what came into the exchange folder so far

 private:
  void renew();
  void checkWrittenFiles();
  std::optional<OverlaySnapshot> kept_;
  bool syncing_ = false;
  double lastRenewal_ = 0;
};

}  // namespace vellora::e2e
