// Writes the rules of ICU's transliteration "Traditional-Simplified" into a header, as a text. Run
// while the program is built: making the transliterator takes 15 ms and a library of 3 MB, which
// the program does without.
//
//   rules_writer HEADER
#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include <unicode/translit.h>

#include "platform/linux/text/replacement_rules.h"

namespace {

std::optional<std::string> transliterationRules() {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::Transliterator> transliterator(
      icu::Transliterator::createInstance("Traditional-Simplified", UTRANS_FORWARD, error));
  if (U_FAILURE(error) || transliterator == nullptr) return std::nullopt;
  icu::UnicodeString rules;
  transliterator->toRules(rules, false);
  std::string written;
  return rules.toUTF8String(written);
}

int complain(const char* what) {
  std::fprintf(stderr, "rules_writer: %s\n", what);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return complain("usage: rules_writer HEADER");
  const std::optional<std::string> rules = transliterationRules();
  if (!rules) return complain("this ICU has no transliteration \"Traditional-Simplified\"");
  if (!vellora::ReplacementRules::parse(*rules)) {
    return complain(
        "the rules of this ICU's \"Traditional-Simplified\" are not plain replacements");
  }
  std::ofstream header(argv[1], std::ios::binary);
  header << "// Written by rules_writer.\n#pragma once\n\n#include <string_view>\n\n"
         << "namespace vellora {\n\n"
         << "inline constexpr std::string_view traditionalSimplifiedRules = R\"rules(" << *rules
         << ")rules\";\n\n}  // namespace vellora\n";
  header.close();
  return header ? 0 : complain("the header cannot be written");
}
