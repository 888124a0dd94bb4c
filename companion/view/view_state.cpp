#include "companion/view/view_state.h"

#include <algorithm>
#include <limits>

namespace vellora::companion {

double untilNextLine(const ViewState& state) {
  constexpr double never = std::numeric_limits<double>::infinity();
  if (!state.track || !state.track->playing || state.song == nullptr) return never;
  const double sung = state.position - state.shift / 1000.0;
  double next = never;
  for (const SongLine& line : state.song->song.lines) {
    if (line.time && *line.time > sung) next = std::min(next, *line.time - sung);
  }
  return std::max(next, shortestWait);
}

}  // namespace vellora::companion
