#include <memory>

#include <unicode/translit.h>
#include <unicode/uniset.h>

#include "base/utf8.h"
#include "platform/linux/text/icu_text.h"
#include "platform/text_services.h"

namespace vellora::TextServices {

namespace {

// ICU's transliterator with the set of the characters that its rules begin with or pass over.
// Making it takes about 10 ms, so it is made once, at the first text that needs it. From then on it
// is constant, and ICU lets any number of threads use a constant transliterator.
class Simplifier {
 public:
  static const Simplifier& shared() {
    static const Simplifier simplifier;
    return simplifier;
  }

  bool available() const { return transliterator != nullptr; }

  // Whether a rule may change the text.
  bool concerns(std::string_view text) const {
    for (std::size_t at = 0; at < text.size();) {
      if (isRuled(nextCharacter(text, at))) return true;
    }
    return false;
  }

  // The rules take 0.2 µs a character, so they are shown only the stretches that consist of
  // characters of rules; the rest of the text remains their context.
  std::string simplified(std::string_view text) const {
    icu::UnicodeString buffer = icuText(text);
    for (int32_t at = 0; at < buffer.length();) {
      const int32_t end = ruledStretchEnd(buffer, at);
      if (end == at) {
        at = buffer.moveIndex32(at, 1);
        continue;
      }
      UTransPosition position{0, buffer.length(), at, end};
      transliterator->finishTransliteration(buffer, position);
      at = position.limit;
    }
    std::string result;
    appendText(result, buffer);
    return result;
  }

 private:
  Simplifier() {
    UErrorCode error = U_ZERO_ERROR;
    transliterator.reset(icu::Transliterator::createInstance(
        icu::UnicodeString::fromUTF8("Traditional-Simplified"), UTRANS_FORWARD, error));
    if (U_FAILURE(error)) transliterator.reset();
    if (transliterator != nullptr) transliterator->getSourceSet(ruled);
    ruled.freeze();
  }

  bool isRuled(char32_t character) const { return ruled.contains(static_cast<UChar32>(character)); }

  int32_t ruledStretchEnd(const icu::UnicodeString& text, int32_t at) const {
    while (at < text.length() && ruled.contains(text.char32At(at))) at = text.moveIndex32(at, 1);
    return at;
  }

  std::unique_ptr<icu::Transliterator> transliterator;
  icu::UnicodeSet ruled;
};

}  // namespace

std::optional<std::string> simplified(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  const Simplifier& simplifier = Simplifier::shared();
  if (!simplifier.available()) return std::nullopt;
  return simplifier.concerns(text) ? simplifier.simplified(text) : wellFormed(text);
}

}  // namespace vellora::TextServices
