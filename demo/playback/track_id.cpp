#include "playback/track_id.h"

#include <cmath>

namespace vellora::demo {

std::string trackId(std::size_t index) {
  return "/org/vellora/demo/track/" + std::to_string(index + 1);
}

std::optional<std::size_t> trackIndex(std::string_view id, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (trackId(i) == id) return i;
  }
  return std::nullopt;
}

std::int64_t microseconds(double seconds) { return std::llround(seconds * 1e6); }

double secondsFrom(std::int64_t microseconds) { return static_cast<double>(microseconds) / 1e6; }

}  // namespace vellora::demo
