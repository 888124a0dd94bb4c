#include "controller/overlay_delegate.h"

#include <functional>
#include <utility>

#include "controller/music_application.h"
#include "controller/status_messages.h"
#include "exchange/publishing.h"
#include "music/lyrics_layout_reader.h"

namespace vellora {

OverlayDelegate::OverlayDelegate(std::optional<std::filesystem::path> snapshotLocation,
                                 Platform& platform, std::ostream& output)
    : platform_(platform),
      application_(platform.application()),
      clock_(platform.makeClock()),
      painter_(platform.makeCaptionPainter()),
      accessibility_(platform.makeAccessibility()),
      workspace_(platform.makeWorkspace()),
      scripting_(platform.makeMusicScripting()),
      view_(platform.makeView()),
      output_(output),
      snapshotURL(std::move(snapshotLocation)),
      canvas(*painter_, *view_, *workspace_),
      panel(platform.makePanel()),
      queue(application_.makeSerialQueue("Vellora.accessibility")),
      lastFresh(clock_->now()),
      lastNowPlayingPublish(distantPast) {}

OverlayDelegate::~OverlayDelegate() = default;

void OverlayDelegate::tick() {
  if (std::exchange(ticking_, true)) return;
  decide();
  ticking_ = false;
}

void OverlayDelegate::decide() {
  const bool syncing = syncRequested();
  if (syncing) {
    performPendingCommand();
    publishNowPlaying();
  }

  std::shared_ptr<const OverlaySnapshot> snapshot = usableSnapshot();
  if (!snapshot) {
    hide(syncing ? StatusMessages::followingForTessaly : StatusMessages::waitingForLyrics);
    if (!syncing && clock_->now() - lastFresh > longestWaitForSnapshot) stop();
    return;
  }
  lastFresh = clock_->now();

  if (!accessibility_->isTrusted()) {
    if (!requestedAccess) requestAccess();
    return hide(StatusMessages::allowAccess);
  }
  std::shared_ptr<const RunningApplication> music = frontmostMusic(*workspace_);
  if (!music) return hide(StatusMessages::bringMusicToFront);

  if (!scanning) startReading(std::move(music), std::move(snapshot));
}

std::shared_ptr<const OverlaySnapshot> OverlayDelegate::usableSnapshot() {
  if (!snapshotURL) return nullptr;
  std::shared_ptr<const OverlaySnapshot> snapshot = snapshotReader_.read(*snapshotURL);
  if (!snapshot || !snapshot->isUsable(clock_->now())) return nullptr;
  return snapshot;
}

// The work for the background holds what it needs by itself. It must not even look at the
// controller, which may be gone by then: only the hand-off back does, on the main thread. The index
// of lines that are new is made there too, before the window is read: it may take seconds.
void OverlayDelegate::startReading(std::shared_ptr<const RunningApplication> music,
                                   std::shared_ptr<const OverlaySnapshot> snapshot) {
  scanning = true;
  queue->async([self = weak_from_this(), accessibility = accessibility_, clock = clock_,
                onMain = application_.mainHandOff(), music = std::move(music),
                known = hasIndexOf(snapshot->lines), carried = std::move(snapshot)] {
    const PreparedIndex prepared = known ? PreparedIndex() : PreparedIndex(carried);
    onMain([self, carried, prepared,
            layout = readMusic(music->processIdentifier(), *accessibility, *clock)] {
      const auto controller = self.lock();
      if (!controller) return;
      if (prepared.index) controller->preparedIndex_ = prepared;
      controller->finishReading(layout, *carried);
    });
  });
}

bool OverlayDelegate::hasIndexOf(const OverlayLines& lines) const {
  return preparedIndex_.isOf(lines) || lastLines == lines;
}

void OverlayDelegate::finishReading(const std::optional<MusicLayout>& layout,
                                    const OverlaySnapshot& snapshot) {
  scanning = false;
  if (frontmostMusic(*workspace_) && snapshot.isUsable(clock_->now())) {
    render(layout, snapshot);
  } else {
    hide(StatusMessages::bringMusicToFront);
  }
}

void OverlayDelegate::render(const std::optional<MusicLayout>& layout,
                             const OverlaySnapshot& snapshot, bool showPanel) {
  const CompositionFields fields{*panel,    canvas,       *workspace_, *painter_,     lastLines,
                                 lineIndex, translations, trackMatch,  preparedIndex_};
  writeStatus(vellora::render(fields, layout, snapshot, showPanel), false);
  if (lineIndex == preparedIndex_.index) preparedIndex_ = {};  // it has been taken
}

}  // namespace vellora
