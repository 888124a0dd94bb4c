#include <memory>

#include <unicode/translit.h>

#include "base/utf8.h"
#include "platform/linux/text/icu_text.h"
#include "platform/linux/text/replacement_rules.h"
#include "platform/text_services.h"

namespace vellora::TextServices {

namespace {

// ICU's transliterator "Traditional-Simplified". Making it takes about 10 ms, so it is made once,
// at the first text that needs it, and is constant from then on. Applying it takes 0.25 µs a
// character; where its rules are the plain replacements that CLDR publishes, they are applied here
// in a fraction of that, and the transliterator is let go. Where they are more than that, ICU
// applies them; it lets any number of threads use a constant transliterator.
class Simplifier {
 public:
  static const Simplifier& shared() {
    static const Simplifier simplifier;
    return simplifier;
  }

  std::optional<std::string> simplified(std::string_view text) const {
    if (rules_) return rules_->apply(text);
    if (!transliterator_) return std::nullopt;
    icu::UnicodeString buffer = icuText(text);
    transliterator_->transliterate(buffer);
    std::string result;
    appendText(result, buffer);
    return result;
  }

 private:
  Simplifier() {
    UErrorCode error = U_ZERO_ERROR;
    transliterator_.reset(icu::Transliterator::createInstance(
        icu::UnicodeString::fromUTF8("Traditional-Simplified"), UTRANS_FORWARD, error));
    if (U_FAILURE(error)) transliterator_.reset();
    if (!transliterator_) return;
    icu::UnicodeString source;
    std::string written;
    appendText(written, transliterator_->toRules(source, false));
    rules_ = ReplacementRules::parse(written);
    if (rules_) transliterator_.reset();
  }

  std::unique_ptr<icu::Transliterator> transliterator_;
  std::optional<ReplacementRules> rules_;
};

}  // namespace

std::optional<std::string> simplified(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  return Simplifier::shared().simplified(text);
}

}  // namespace vellora::TextServices
