#include "exchange/publishing.h"

namespace vellora {

bool syncRequested(const SnapshotLocation& snapshot, const Clock& clock,
                   RecordReader<SyncRequest>& reader) {
  const auto file = exchangeFile(snapshot, syncRequestFileName);
  if (!file) return false;
  const auto request = reader.read(*file);
  return request && request->isActive(clock.now());
}

void publishNowPlaying(const SnapshotLocation& snapshot, const Clock& clock,
                       double& lastNowPlayingPublish, const NowPlayingReader& readNowPlaying) {
  if (!snapshot) return;
  const double now = clock.now();
  if (now - lastNowPlayingPublish < nowPlayingPublishInterval) return;
  lastNowPlayingPublish = now;
  const std::optional<NowPlayingTrack> track = readNowPlaying();
  if (!track) return;
  writeExchangeFile(*exchangeFile(snapshot, nowPlayingFileName), *track);
}

}  // namespace vellora
