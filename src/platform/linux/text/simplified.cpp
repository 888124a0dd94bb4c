#include "base/utf8.h"
#include "platform/linux/text/replacement_rules.h"
#include "platform/text_services.h"
#include "traditional_simplified_rules.h"

namespace vellora::TextServices {

// The rules are those of ICU's transliterator, written out while this was built; reading them takes
// half a millisecond, once.
std::optional<std::string> simplified(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  static const std::optional<ReplacementRules> rules =
      ReplacementRules::parse(traditionalSimplifiedRules);
  if (!rules) return std::nullopt;
  return rules->apply(text);
}

}  // namespace vellora::TextServices
