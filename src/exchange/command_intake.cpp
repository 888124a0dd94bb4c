#include "exchange/command_intake.h"

#include "exchange/publishing.h"

namespace vellora {

void performPendingCommand(const SnapshotLocation& snapshot, const Clock& clock,
                           RecordReader<MusicCommand>& reader, const CommandRunner& run,
                           double& lastNowPlayingPublish) {
  const auto file = exchangeFile(snapshot, commandFileName);
  if (!file) return;
  const auto command = reader.read(*file);
  if (!command) return;
  // Before the test of freshness, so that a stale command goes too, and before it runs, so that it
  // does not run twice.
  removeFile(*file);
  if (!command->isFresh(clock.now())) return;
  run(*command);
  lastNowPlayingPublish = distantPast;
}

}  // namespace vellora
