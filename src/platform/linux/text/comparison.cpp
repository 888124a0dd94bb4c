#include <algorithm>

#include <unicode/bytestream.h>
#include <unicode/uchar.h>

#include "base/utf8.h"
#include "platform/linux/text/character_boundary.h"
#include "platform/linux/text/character_facts.h"
#include "platform/linux/text/icu_text.h"
#include "platform/text_services.h"

namespace vellora::TextServices {

bool isAlphanumeric(char32_t character) {
  constexpr std::uint32_t categories = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK;
  return (U_GET_GC_MASK(static_cast<UChar32>(character)) & categories) != 0;
}

namespace {

// Whether it is plain that `text` is UTF-8 and in form C: of characters that nothing composes with,
// and no mark behind another, whose order might be another.
bool isPlainlyComposed(std::string_view text) {
  const RememberedFacts& remembered = RememberedFacts::shared();
  bool wasOrdered = false;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (character < 0x80 || isComposedSyllable(character)) {
      wasOrdered = false;
      continue;
    }
    if (!RememberedFacts::has(character)) return false;
    const CharacterFacts facts = remembered.of(character);
    if (!facts.composed || (facts.ordered && wasOrdered)) return false;
    wasOrdered = facts.ordered;
  }
  return true;
}

}  // namespace

// Form C, which most texts have already.
std::string canonicalForm(std::string_view text) {
  if (isAscii(text) || isPlainlyComposed(text)) return std::string(text);
  std::string given = wellFormed(text);
  const icu::Normalizer2& composed = normalizer(Normalization::composed);
  UErrorCode error = U_ZERO_ERROR;
  if (composed.isNormalizedUTF8(piece(given), error) && U_SUCCESS(error)) return given;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  error = U_ZERO_ERROR;
  composed.normalizeUTF8(0, piece(given), sink, nullptr, error);
  return U_SUCCESS(error) ? result : given;
}

namespace {

// The last character of `text`, which must not be empty; U+FFFD where it is ill-formed.
char32_t lastCharacter(std::string_view text) {
  constexpr std::size_t longest = 4;
  const std::size_t lowest = text.size() - std::min(text.size(), longest);
  std::size_t at = text.size() - 1;
  while (at > lowest && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) --at;
  const char32_t character = nextCharacter(text, at);
  return at == text.size() ? character : replacementCharacter;
}

// Whether it is plain that nothing before and behind this place changes with what stands on its
// other side: neither in its canonical form nor in its characters.
bool isSeam(std::string_view before, std::string_view behind) {
  const char32_t last = lastCharacter(before);
  std::size_t at = 0;
  const char32_t first = nextCharacter(behind, at);
  return last != replacementCharacter && first != replacementCharacter &&
         normalizer(Normalization::composed).hasBoundaryBefore(static_cast<UChar32>(first)) &&
         standAlone(last, first);
}

}  // namespace

// Canonical equivalents have their character boundaries at the same places, and nothing composes
// across one; so whole characters agree where the canonical forms do and a boundary follows.
bool beginsWith(std::string_view text, std::string_view prefix) {
  if (prefix.empty() || text == prefix) return true;
  if (text.starts_with(prefix) && isSeam(prefix, text.substr(prefix.size()))) return true;
  const std::string whole = canonicalForm(text);
  const std::string begin = canonicalForm(prefix);
  if (!whole.starts_with(begin)) return false;
  if (whole.size() == begin.size()) return true;
  return isCharacterBoundary(icuText(whole), icuText(begin).length());
}

}  // namespace vellora::TextServices
