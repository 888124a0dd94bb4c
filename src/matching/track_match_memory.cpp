#include "matching/track_match_memory.h"

#include "matching/track_matching.h"

namespace vellora {

bool TrackMatchMemory::matches(std::string_view description, std::string_view title,
                               std::string_view artist) {
  if (description != description_ || title != title_ || artist != artist_) {
    matches_ = OverlayMatching::trackMatches(description, title, artist);
    description_ = description;
    title_ = title;
    artist_ = artist;
  }
  return matches_;
}

}  // namespace vellora
