#include "companion/program/online.h"

#include "companion/service/lyrics_service.h"

namespace vellora::companion {

std::unique_ptr<LyricsSource> lyricsFromElsewhere(const Options& options) {
  const auto server = parseServerAddress(options.lyricsServer);
  if (options.lyrics == "none" || !server) return nullptr;
  return makeLyricsService(*server, defaultLyricsCache(processEnvironment).value_or(""));
}

}  // namespace vellora::companion
