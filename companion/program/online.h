#pragma once

#include <memory>

#include "companion/exchange/lyrics_source.h"
#include "companion/program/options.h"

namespace vellora::companion {

// Who is asked for lyrics that the folder lacks; null where the user has not said that somebody
// shall be. Main thread.
std::unique_ptr<LyricsSource> lyricsFromElsewhere(const Options& options);

}  // namespace vellora::companion
