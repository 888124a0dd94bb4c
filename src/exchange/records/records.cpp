#include "exchange/records/records.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace vellora {

namespace {

// Younger than `maximumAge`, and at most 1 second in the future: the two programs' clocks are the
// same, but not the moments at which each reads it. False for every time that is not a number.
bool isFreshAt(double now, double time, double maximumAge) {
  constexpr double skewAllowance = 1.0;
  return now - time < maximumAge && time - skewAllowance <= now;
}

struct ActionName {
  MusicCommand::Action action;
  std::string_view name;
};

constexpr std::array<ActionName, 5> actionNames{{
    {MusicCommand::Action::play, "play"},
    {MusicCommand::Action::seek, "seek"},
    {MusicCommand::Action::playPause, "playPause"},
    {MusicCommand::Action::previous, "previous"},
    {MusicCommand::Action::next, "next"},
}};

}  // namespace

bool operator==(const OverlayLine& a, const OverlayLine& b) {
  return textEquals(a.source, b.source) && textEquals(a.translation, b.translation);
}

const std::vector<OverlayLine>& OverlayLines::none() {
  static const std::vector<OverlayLine> lines;
  return lines;
}

bool OverlaySnapshot::isUsable(double now) const {
  return version == 1 && enabled && isFreshAt(now, updatedAt, 6.0);
}

bool NowPlayingTrack::isUsable(double now) const {
  return version == 1 && !title.empty() && isFreshAt(now, updatedAt, nowPlayingMaxAge);
}

std::optional<double> NowPlayingTrack::playbackTime(double now) const {
  if (!isUsable(now)) return std::nullopt;
  return playing ? position + std::max(now - updatedAt, 0.0) : position;
}

bool operator==(const NowPlayingTrack& a, const NowPlayingTrack& b) {
  return a.version == b.version && a.updatedAt == b.updatedAt && textEquals(a.title, b.title) &&
         textEquals(a.artist, b.artist) && textEquals(a.album, b.album) &&
         a.position == b.position && a.playing == b.playing;
}

bool SyncRequest::isActive(double now) const {
  return isFreshAt(now, updatedAt, syncRequestMaxAge);
}

std::string_view MusicCommand::name(Action action) {
  for (const ActionName& entry : actionNames) {
    if (entry.action == action) return entry.name;
  }
  return {};
}

std::optional<MusicCommand::Action> MusicCommand::actionNamed(std::string_view name) {
  for (const ActionName& entry : actionNames) {
    if (entry.name == name) return entry.action;
  }
  return std::nullopt;
}

bool MusicCommand::isFresh(double now) const { return isFreshAt(now, requestedAt, commandMaxAge); }

bool operator==(const MusicCommand& a, const MusicCommand& b) {
  return a.requestedAt == b.requestedAt && a.action == b.action && textEquals(a.title, b.title) &&
         textEquals(a.artist, b.artist) && a.position == b.position;
}

}  // namespace vellora
