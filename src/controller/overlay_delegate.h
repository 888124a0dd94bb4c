#pragma once

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/record_reader.h"
#include "exchange/records/records.h"
#include "matching/track_match_memory.h"
#include "matching/translation_index.h"
#include "music/music_layout.h"
#include "platform/platform.h"
#include "render/caption_view.h"
#include "render/composition.h"

namespace vellora {

// Seconds from one tick to the next.
inline constexpr double tickInterval = 0.12;
// Seconds without a usable snapshot after which the overlay stops itself.
inline constexpr double longestWaitForSnapshot = 15.0;

// The controller of the running overlay: decides at each tick whether the player's window is read,
// hands the reading to the background queue and its result to the composition, and reports one
// status line. Every operation and field belongs to the main thread, and nothing here fails towards
// its caller. Held by shared_ptr: the timer, the menu and the reading in flight hold it weakly.
class OverlayDelegate final : public ApplicationDelegate,
                              public std::enable_shared_from_this<OverlayDelegate> {
  // What the platform made for the fields below, which therefore go first.
  Platform& platform_;
  Application& application_;
  std::shared_ptr<const Clock> clock_;
  std::unique_ptr<CaptionPainter> painter_;  // first: its fonts are read while the others connect
  std::shared_ptr<Accessibility> accessibility_;
  std::unique_ptr<Workspace> workspace_;
  std::unique_ptr<MusicScripting> scripting_;
  std::unique_ptr<NativeView> view_;
  std::ostream& output_;

 public:
  // The snapshot file; its folder is the exchange folder. Without one no file is read or written.
  std::optional<std::filesystem::path> snapshotURL;
  CaptionView canvas;                      // the panel's content, so that it must outlive the panel
  std::unique_ptr<Panel> panel;            // never null
  std::unique_ptr<SerialQueue> queue;      // "Vellora.accessibility": reads the player's window
  bool scanning = false;                   // from the start of a reading until its result is here
  std::unique_ptr<Timer> timer;            // null before the launch
  std::unique_ptr<StatusItem> statusItem;  // null before the launch, or where there is no place
  std::string statusMessage;               // as last recorded; empty: the next one is written
  OverlayLines lastLines;                  // the lines for which `translations` holds
  std::shared_ptr<const TranslationIndex> lineIndex;  // of `lastLines`; null: of none
  TranslationCache translations;                      // row text → translation
  TrackMatchMemory trackMatch;   // whether the window shows the snapshot's track
  double lastFresh;              // seconds since 1970, when a snapshot was last usable
  double lastNowPlayingPublish;  // seconds since 1970 of the last attempt
  bool requestedAccess = false;  // the user has been asked for the permission

  // Shows nothing, starts no timer and needs no display. The platform and the output, which gets
  // what scripts have to say, must outlive the controller.
  OverlayDelegate(std::optional<std::filesystem::path> snapshotLocation, Platform& platform,
                  std::ostream& output);
  ~OverlayDelegate() override;
  OverlayDelegate(const OverlayDelegate&) = delete;
  OverlayDelegate& operator=(const OverlayDelegate&) = delete;

  // Launch: the panel's settings, the status item with its menu, the timer, the first tick.
  void applicationDidFinishLaunching() override;
  // Moves the snapshot location where the first URL names an acceptable one, and ticks at once.
  void applicationOpen(const std::vector<std::string>& urls) override;

  // The exchange folder and the status file, computed afresh; nothing without a snapshot location.
  std::optional<std::filesystem::path> directory() const;
  std::optional<std::filesystem::path> statusURL() const;

  // One step of the overlay. Waits for the player's answer to a script, never for its window. Where
  // a system lets the event loop go on meanwhile, a tick within a tick does nothing.
  void tick();

  // Whether Tessaly wants to be told what is playing.
  bool syncRequested();
  // Carries out the command that waits in the exchange folder, if it is still fresh.
  void performPendingCommand();
  // Writes what is playing, at most twice a second.
  void publishNowPlaying();
  // What the player plays; nothing when it is not running, is stopped or cannot be asked.
  std::optional<NowPlayingTrack> readNowPlayingTrack();
  void runInMusic(const MusicCommand& command);

  // Composes the captions of one reading, shows or hides the panel and reports the status line.
  // Without `showPanel` a panel that has captions stays as hidden or visible as it is.
  void render(const std::optional<MusicLayout>& layout, const OverlaySnapshot& snapshot,
              bool showPanel = true);

  // Records a status line, shows it as the tooltip and writes it to the status file, unless it is
  // the recorded one, `stopped` is false and the file exists. Without a location it does nothing.
  // Removes what a crash left half written in the exchange folder.
  void tidyUp();
  void writeStatus(std::string_view message, bool stopped);
  // Hides the panel and reports the status line.
  void hide(std::string_view message);
  // Reports the end, hides the panel and ends the program unless a sync request is active.
  void stop();

  // Has the system ask the user for the accessibility permission, at every call.
  void requestAccess();
  // Makes the panel the transparent, click-through window around the canvas.
  void configurePanel();

 private:
  // What a tick does.
  void decide();
  // Null unless the file holds one that is usable now.
  std::shared_ptr<const OverlaySnapshot> usableSnapshot();
  void startReading(std::shared_ptr<const RunningApplication> music,
                    std::shared_ptr<const OverlaySnapshot> snapshot);
  void finishReading(const std::optional<MusicLayout>& layout, const OverlaySnapshot& snapshot);
  bool hasIndexOf(const OverlayLines& lines) const;
  void addStatusItem();

  bool ticking_ = false;
  PreparedIndex preparedIndex_;  // made by a reading that has not been drawn yet
  RecordReader<SyncRequest> syncRequestReader_;
  RecordReader<MusicCommand> commandReader_;
  RecordReader<OverlaySnapshot> snapshotReader_;
};

}  // namespace vellora
