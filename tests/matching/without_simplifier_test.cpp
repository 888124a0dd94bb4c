// The matching above text services that lack the transliteration: this program brings its own
// implementation of the services' header in the place of a backend.
#include <gtest/gtest.h>

#include "matching/normalization.h"
#include "platform/text_services.h"

namespace vellora {

std::optional<std::string> TextServices::simplified(std::string_view) { return std::nullopt; }

std::string TextServices::folded(std::string_view text) { return "【" + std::string(text) + "】"; }

bool TextServices::isAlphanumeric(char32_t character) { return character != U' '; }

std::string TextServices::canonicalForm(std::string_view text) { return std::string(text); }

bool TextServices::beginsWith(std::string_view text, std::string_view prefix) {
  return text.starts_with(prefix);
}

namespace {

TEST(WithoutSimplifierTest, TextGoesOnUnchangedWhereTheTransformYieldsNothing) {
  EXPECT_EQ(OverlayMatching::normalized("我愛 你"), "【我愛你】");
}

}  // namespace
}  // namespace vellora
