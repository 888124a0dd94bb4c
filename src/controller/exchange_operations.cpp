#include "base/files.h"
#include "controller/overlay_delegate.h"
#include "controller/status_messages.h"
#include "exchange/command_intake.h"
#include "exchange/exchange_folder.h"
#include "exchange/opened_url.h"
#include "exchange/publishing.h"
#include "exchange/status_file.h"
#include "music/command_runner.h"
#include "music/now_playing_reader.h"

namespace vellora {

std::optional<std::filesystem::path> OverlayDelegate::directory() const {
  return exchangeDirectory(snapshotURL);
}

std::optional<std::filesystem::path> OverlayDelegate::statusURL() const {
  return exchangeFile(snapshotURL, statusFileName);
}

void OverlayDelegate::applicationOpen(const std::vector<std::string>& urls) {
  SnapshotLocation location = acceptedSnapshotLocation(urls);
  if (!location) return;
  snapshotURL = std::move(location);
  tidyUp();
  lastFresh = clock_->now();
  statusMessage.clear();
  tick();
}

void OverlayDelegate::tidyUp() {
  if (const auto folder = directory()) removeAbandonedFiles(*folder);
}

bool OverlayDelegate::syncRequested() {
  return vellora::syncRequested(snapshotURL, *clock_, syncRequestReader_);
}

void OverlayDelegate::performPendingCommand() {
  vellora::performPendingCommand(
      snapshotURL, *clock_, commandReader_,
      [this](const MusicCommand& command) { runInMusic(command); }, lastNowPlayingPublish);
}

void OverlayDelegate::publishNowPlaying() {
  vellora::publishNowPlaying(snapshotURL, *clock_, lastNowPlayingPublish,
                             [this] { return readNowPlayingTrack(); });
}

std::optional<NowPlayingTrack> OverlayDelegate::readNowPlayingTrack() {
  return vellora::readNowPlayingTrack(*scripting_, *clock_, output_);
}

void OverlayDelegate::runInMusic(const MusicCommand& command) {
  vellora::runInMusic(command, *scripting_, output_);
}

void OverlayDelegate::writeStatus(std::string_view message, bool stopped) {
  const std::optional<std::filesystem::path> file = statusURL();
  if (!file || isStatusCurrent(*file, message, stopped, statusMessage)) return;
  statusMessage = message;
  if (statusItem && statusItem->hasButton()) statusItem->setToolTip(statusMessage);
  writeStatusFile(*file, statusMessage, stopped);
}

void OverlayDelegate::hide(std::string_view message) {
  panel->orderOut();
  writeStatus(message, false);
}

void OverlayDelegate::stop() {
  writeStatus(StatusMessages::stopped, true);
  panel->orderOut();
  if (syncRequested()) return;
  application_.terminate();
}

}  // namespace vellora
