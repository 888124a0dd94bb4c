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

const Orthography& mainland() {
  static const Orthography orthography("zh-cn");
  return orthography;
}
const Orthography& taiwan() {
  static const Orthography orthography("zh-tw");
  return orthography;
}
// What it has beside Taiwan's.
const Orthography& hongKong() {
  static const Orthography orthography("zh-hk");
  return orthography;
}
const Orthography& japan() {
  static const Orthography orthography("ja");
  return orthography;
}

bool isHan(char32_t character) { return g_unichar_get_script(character) == G_UNICODE_SCRIPT_HAN; }

bool wouldBeFolded(const std::string& text) {
  const std::optional<std::string> simplified = TextServices::simplified(text);
  return simplified && *simplified != text;
}

// The language of a text that has Han characters, and no other script that tells. Folding comes
// last, for its tables are large and are made when they are first asked for.
const char* languageOfHan(const std::string& text) {
  bool isSimplified = true;
  bool isTraditional = true;
  bool isJapanese = true;
  int surplus = 0;  // of characters that Taiwan has and the mainland has not
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (!isHan(character)) continue;
    const bool simplified = mainland().has(character);
    const bool traditional = taiwan().has(character);
    const bool elsewhere = !traditional && hongKong().has(character);
    isSimplified = isSimplified && simplified;
    isTraditional = isTraditional && (traditional || elsewhere);
    isJapanese = isJapanese && japan().has(character);
    if (traditional && !simplified) ++surplus;
    if (simplified && !traditional && !elsewhere) --surplus;
  }
  if (isJapanese && !isSimplified && !isTraditional) return "ja";
  if (surplus != 0) return surplus > 0 ? "zh-tw" : "zh-cn";
  return wouldBeFolded(text) ? "zh-tw" : "zh-cn";
}

// Korean has the characters of Traditional Chinese.
bool hasCharacter(std::string_view language, char32_t character) {
  if (language == "ja") return japan().has(character);
  if (language == "zh-cn") return mainland().has(character);
  return taiwan().has(character) || hongKong().has(character);
}

bool hasAllHan(std::string_view language, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (isHan(character) && !hasCharacter(language, character)) return false;
  }
  return true;
}

// What the scripts of a text tell of its language.
enum class Script { japanese, korean, taiwanese, han, other };

Script scriptOf(std::string_view text) {
  Script found = Script::other;
  for (std::size_t at = 0; at < text.size();) {
    switch (g_unichar_get_script(nextCharacter(text, at))) {
      case G_UNICODE_SCRIPT_HIRAGANA:
      case G_UNICODE_SCRIPT_KATAKANA:
        return Script::japanese;
      case G_UNICODE_SCRIPT_HANGUL:
        return Script::korean;
      case G_UNICODE_SCRIPT_BOPOMOFO:
        found = Script::taiwanese;
        break;
      case G_UNICODE_SCRIPT_HAN:
        if (found == Script::other) found = Script::han;
        break;
      default:
        break;
    }
  }
  return found;
}

const char* languageOf(Script script, std::string_view text) {
  switch (script) {
    case Script::japanese:
      return "ja";
    case Script::korean:
      return "ko";
    case Script::taiwanese:
      return "zh-tw";
    case Script::han:
      return languageOfHan(TextServices::canonicalForm(text));
    case Script::other:
      break;
  }
  return "en";
}

}  // namespace

const char* languageTag(std::string_view text) { return languageOf(scriptOf(text), text); }

const char* languageTag(std::string_view text, const char* common) {
  const Script script = scriptOf(text);
  const bool isOpen = script == Script::han && std::string_view(common) != "en";
  if (isOpen && hasAllHan(common, TextServices::canonicalForm(text))) return common;
  return languageOf(script, text);
}

const char* commonLanguage(const std::vector<std::string_view>& texts) {
  std::size_t japanese = 0;
  std::size_t korean = 0;
  std::size_t seen = 0;
  std::string chinese;
  for (const std::string_view text : texts) {
    const Script script = scriptOf(text);
    if (script == Script::other) continue;
    if (script == Script::japanese) {
      ++japanese;
    } else if (script == Script::korean) {
      ++korean;
    } else {
      chinese.append(text).append("\n");
    }
    if (++seen == mostTexts) break;
  }
  if (japanese >= korean && japanese > 0 && 4 * japanese >= seen) return "ja";
  if (korean > 0 && 4 * korean >= seen) return "ko";
  return languageTag(chinese);
}

}  // namespace vellora
