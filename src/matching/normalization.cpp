#include "matching/normalization.h"

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora {

std::string OverlayMatching::normalized(std::string_view text) {
  const std::optional<std::string> simplified = TextServices::simplified(text);
  const std::string folded =
      TextServices::folded(simplified ? std::string_view(*simplified) : text);
  std::string key;
  key.reserve(folded.size());
  for (std::size_t at = 0; at < folded.size();) {
    const std::size_t begin = at;
    if (TextServices::isAlphanumeric(nextCharacter(folded, at))) {
      key.append(folded, begin, at - begin);
    }
  }
  return key;
}

}  // namespace vellora
