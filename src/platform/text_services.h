#pragma once

#include <optional>
#include <string>
#include <string_view>

// Stateless services on UTF-8 texts, one implementation per backend. Nothing here depends on the
// user's language settings. Ill-formed UTF-8 is read as U+FFFD. Any thread.
namespace vellora::TextServices {

// Traditional Chinese characters replaced by their Simplified forms (the ICU transliteration
// "Traditional-Simplified"), everything else unchanged. Nothing when the service is not to be had.
std::optional<std::string> simplified(std::string_view text);

// Folded without regard to case, diacritical marks and character width, under the fixed locale
// en_US_POSIX.
std::string folded(std::string_view text);

// General categories L, M and N.
bool isAlphanumeric(char32_t character);

// One spelling for all canonically equivalent texts; never shown or stored in a file.
std::string canonicalForm(std::string_view text);

// Whether `text` begins with `prefix` by whole characters (extended grapheme clusters) that are
// canonically equivalent. Every text begins with the empty one.
bool beginsWith(std::string_view text, std::string_view prefix);

}  // namespace vellora::TextServices
