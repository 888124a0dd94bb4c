#include "platform/linux/text/icu_text.h"

#include <cstdlib>

namespace vellora {

namespace {

using Getter = const icu::Normalizer2* (*)(UErrorCode&);

const icu::Normalizer2& got(Getter getter) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* found = getter(error);
  if (U_FAILURE(error) || found == nullptr) std::abort();
  return *found;
}

}  // namespace

const icu::Normalizer2& normalizer(Normalization form) {
  static const icu::Normalizer2& composed = got(icu::Normalizer2::getNFCInstance);
  static const icu::Normalizer2& decomposed = got(icu::Normalizer2::getNFDInstance);
  static const icu::Normalizer2& compatible = got(icu::Normalizer2::getNFKDInstance);
  switch (form) {
    case Normalization::composed:
      return composed;
    case Normalization::decomposed:
      return decomposed;
    case Normalization::compatibilityDecomposed:
      break;
  }
  return compatible;
}

icu::UnicodeString normalized(Normalization form, std::string_view text) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::UnicodeString given = icuText(text);
  icu::UnicodeString result = normalizer(form).normalize(given, error);
  return U_SUCCESS(error) ? result : given;
}

}  // namespace vellora
