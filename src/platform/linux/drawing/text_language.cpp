#include "platform/linux/drawing/text_language.h"

#include <cstddef>
#include <optional>
#include <string>

#include <fontconfig/fontconfig.h>
#include <glib.h>

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora {

namespace {

// The characters that are written in a language, as fontconfig has them.
class Orthography {
 public:
  explicit Orthography(const char* language)
      : characters_(FcLangGetCharSet(reinterpret_cast<const FcChar8*>(language))) {}

  bool has(char32_t character) const { return FcCharSetHasChar(characters_, character); }

 private:
  const FcCharSet* characters_;  // of a table that is never freed
};

bool wouldBeFolded(const std::string& text) {
  const std::optional<std::string> simplified = TextServices::simplified(text);
  return simplified && *simplified != text;
}

// The language of a text that has Han characters, and no other script that tells. Folding comes
// last, for its tables are large and are made when they are first asked for.
const char* languageOfHan(const std::string& text) {
  static const Orthography mainland("zh-cn");
  static const Orthography taiwan("zh-tw");
  static const Orthography hongKong("zh-hk");  // what it has beside Taiwan's
  static const Orthography japan("ja");
  bool isSimplified = true;
  bool isTraditional = true;
  bool isJapanese = true;
  int surplus = 0;  // of characters that Taiwan has and the mainland has not
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (g_unichar_get_script(character) != G_UNICODE_SCRIPT_HAN) continue;
    const bool simplified = mainland.has(character);
    const bool traditional = taiwan.has(character);
    const bool elsewhere = !traditional && hongKong.has(character);
    isSimplified = isSimplified && simplified;
    isTraditional = isTraditional && (traditional || elsewhere);
    isJapanese = isJapanese && japan.has(character);
    if (traditional && !simplified) ++surplus;
    if (simplified && !traditional && !elsewhere) --surplus;
  }
  if (isJapanese && !isSimplified && !isTraditional) return "ja";
  if (surplus != 0) return surplus > 0 ? "zh-tw" : "zh-cn";
  return wouldBeFolded(text) ? "zh-tw" : "zh-cn";
}

}  // namespace

const char* languageTag(std::string_view text) {
  bool hasHan = false;
  bool hasBopomofo = false;
  for (std::size_t at = 0; at < text.size();) {
    switch (g_unichar_get_script(nextCharacter(text, at))) {
      case G_UNICODE_SCRIPT_HIRAGANA:
      case G_UNICODE_SCRIPT_KATAKANA:
        return "ja";
      case G_UNICODE_SCRIPT_HANGUL:
        return "ko";
      case G_UNICODE_SCRIPT_BOPOMOFO:
        hasBopomofo = true;
        break;
      case G_UNICODE_SCRIPT_HAN:
        hasHan = true;
        break;
      default:
        break;
    }
  }
  if (hasBopomofo) return "zh-tw";
  return hasHan ? languageOfHan(TextServices::canonicalForm(text)) : "en";
}

}  // namespace vellora
