#include "platform/linux/drawing/text_language.h"

#include <glib.h>

namespace vellora {

const char* languageTag(std::string_view text) {
  bool hasHan = false;
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    const gunichar character = g_utf8_get_char_validated(at, end - at);
    if (character >= static_cast<gunichar>(-2)) {  // ill-formed, or cut off
      ++at;
      continue;
    }
    switch (g_unichar_get_script(character)) {
      case G_UNICODE_SCRIPT_HIRAGANA:
      case G_UNICODE_SCRIPT_KATAKANA:
        return "ja";
      case G_UNICODE_SCRIPT_HANGUL:
        return "ko";
      case G_UNICODE_SCRIPT_HAN:
        hasHan = true;
        break;
      default:
        break;
    }
    at = g_utf8_next_char(at);
  }
  return hasHan ? "zh-cn" : "en";
}

}  // namespace vellora
