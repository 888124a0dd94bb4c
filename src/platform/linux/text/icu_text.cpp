#include "platform/linux/text/icu_text.h"

#include <cstdlib>

namespace vellora {

const icu::Normalizer2& normalizer(Normalization form) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* found = nullptr;
  switch (form) {
    case Normalization::composed:
      found = icu::Normalizer2::getNFCInstance(error);
      break;
    case Normalization::decomposed:
      found = icu::Normalizer2::getNFDInstance(error);
      break;
    case Normalization::compatibilityDecomposed:
      found = icu::Normalizer2::getNFKDInstance(error);
      break;
  }
  if (U_FAILURE(error) || found == nullptr) std::abort();
  return *found;
}

icu::UnicodeString normalized(Normalization form, std::string_view text) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::UnicodeString given = icuText(text);
  icu::UnicodeString result = normalizer(form).normalize(given, error);
  return U_SUCCESS(error) ? result : given;
}

}  // namespace vellora
