#include "companion/readings/icu_rules.h"

#include <utility>

#include <unicode/translit.h>
#include <unicode/unistr.h>

namespace vellora::companion {
namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

class Transliteration final : public IcuRules {
 public:
  explicit Transliteration(std::unique_ptr<icu::Transliterator> rules) : rules_(std::move(rules)) {}

  std::string apply(std::string_view text) const override {
    icu::UnicodeString changed = unicode(text);
    rules_->transliterate(changed);
    std::string result;
    return changed.toUTF8String(result);
  }

 private:
  std::unique_ptr<icu::Transliterator> rules_;
};

std::unique_ptr<IcuRules> owned(icu::Transliterator* made, UErrorCode error) {
  std::unique_ptr<icu::Transliterator> rules(made);
  if (!rules || U_FAILURE(error)) return nullptr;
  return std::make_unique<Transliteration>(std::move(rules));
}

}  // namespace

std::unique_ptr<IcuRules> IcuRules::named(const char* id) {
  UErrorCode error = U_ZERO_ERROR;
  icu::Transliterator* const made =
      icu::Transliterator::createInstance(icu::UnicodeString(id), UTRANS_FORWARD, error);
  return owned(made, error);
}

std::unique_ptr<IcuRules> IcuRules::written(std::string_view rules) {
  UErrorCode error = U_ZERO_ERROR;
  UParseError where;
  icu::Transliterator* const made = icu::Transliterator::createFromRules(
      icu::UnicodeString("Vellora"), unicode(rules), UTRANS_FORWARD, where, error);
  return owned(made, error);
}

}  // namespace vellora::companion
