#include "feeder/feeder.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace vellora::demo {
namespace {

// Whether `interval` has passed since `last`. A clock that was set back counts as if it had.
bool isDue(const std::optional<double>& last, double now, double interval) {
  return !last || now - *last >= interval || now < *last;
}

std::string describe(const Song& song) {
  const auto translated = std::count_if(song.lines.begin(), song.lines.end(),
                                        [](const SongLine& line) { return line.translation; });
  std::string text = song.title;
  text.append(" — ").append(song.artist);
  text.append(": ").append(std::to_string(song.lines.size())).append(" lines, ");
  return text.append(std::to_string(translated)).append(" translated");
}

}  // namespace

Feeder::Feeder(std::vector<Song> songs, CaptionSettings settings)
    : songs_(std::move(songs)), settings_(settings) {}

Feeder::Step Feeder::step(double now, const std::optional<NowPlayingTrack>& published) {
  Step step;
  if (isDue(lastSync_, now, syncInterval)) {
    step.sync = SyncRequest{now};
    lastSync_ = now;
  }
  const bool first = !lastSnapshot_;
  const auto song = songOf(published, now);
  const bool changed = song != song_;
  song_ = song;
  if (changed || isDue(lastSnapshot_, now, snapshotInterval)) {
    step.snapshot = snapshotOf(song_, now);
    lastSnapshot_ = now;
  }
  if (changed || first) {
    step.news = song_ ? describe(songs_[*song_]) : std::string("no song of the library plays");
  }
  return step;
}

OverlaySnapshot Feeder::snapshotOf(std::optional<std::size_t> song, double now) const {
  OverlaySnapshot snapshot;
  snapshot.updatedAt = now;
  snapshot.enabled = song.has_value();
  snapshot.fontSize = settings_.fontSize;
  snapshot.verticalOffset = settings_.verticalOffset;
  if (!song) return snapshot;
  snapshot.musicTitle = songs_[*song].title;
  snapshot.musicArtist = songs_[*song].artist;
  for (const SongLine& line : songs_[*song].lines) {
    snapshot.lines.push_back({line.text, line.translation.value_or("")});
  }
  return snapshot;
}

std::optional<std::size_t> Feeder::songOf(const std::optional<NowPlayingTrack>& published,
                                          double now) const {
  if (!published || !published->isUsable(now)) return std::nullopt;
  for (std::size_t i = 0; i < songs_.size(); ++i) {
    if (textEquals(songs_[i].title, published->title) &&
        textEquals(songs_[i].artist, published->artist)) {
      return i;
    }
  }
  return std::nullopt;
}

}  // namespace vellora::demo
