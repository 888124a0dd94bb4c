#include "matching/translation.h"

#include "matching/translation_index.h"

namespace vellora {

std::optional<std::string> OverlayMatching::translation(std::string_view row,
                                                        const std::vector<OverlayLine>& lines) {
  return TranslationIndex(lines).translation(row);
}

}  // namespace vellora
