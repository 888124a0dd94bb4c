#pragma once

#include <string>
#include <string_view>

#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

// Between UTF-8 texts and ICU's own. Any thread.
namespace vellora {

inline icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<int32_t>(text.size())};
}

// Ill-formed parts become U+FFFD.
inline icu::UnicodeString icuText(std::string_view text) {
  return icu::UnicodeString::fromUTF8(piece(text));
}

inline void appendText(std::string& result, const icu::UnicodeString& text) {
  text.toUTF8String(result);
}

// Unicode's normalisation forms (UAX #15) under the names used here: C, D and KD.
enum class Normalization { composed, decomposed, compatibilityDecomposed };

// ICU's own constant object for the form. Its data is part of the ICU library and does not fail to
// load; the program ends if it does.
const icu::Normalizer2& normalizer(Normalization form);

// `text` in that form.
icu::UnicodeString normalized(Normalization form, std::string_view text);

}  // namespace vellora
