#include "matching/track_matching.h"

#include <string>

#include "base/text.h"
#include "matching/normalization.h"

namespace vellora {

bool OverlayMatching::trackMatches(std::string_view description, std::string_view title,
                                   std::string_view artist) {
  const std::string titleKey = normalized(title);
  const std::string artistKey = normalized(artist);
  if (titleKey.empty() || artistKey.empty()) return false;
  return textBeginsWith(normalized(description), titleKey + artistKey);
}

}  // namespace vellora
