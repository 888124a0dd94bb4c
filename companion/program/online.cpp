#include "companion/program/online.h"

#include "base/environment.h"
#include "companion/service/lyrics_service.h"
#include "companion/settings/user_folders.h"

namespace vellora::companion {

std::unique_ptr<LyricsSource> lyricsFromElsewhere(const Options& options) {
  const auto server = parseServerAddress(options.lyricsServer);
  if (options.lyrics == "none" || !server) return nullptr;
  const auto caches = cacheFolder(environmentVariable);
  return makeLyricsService(*server, caches ? *caches / "vellora" / "lyrics" : "");
}

}  // namespace vellora::companion
