#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellora::companion {

// A file's bytes as UTF-8, and how that was found out.
struct DecodedText {
  std::string text;      // well-formed UTF-8 without a byte-order mark
  std::string encoding;  // IANA's name of what the bytes were in
  int confidence = 100;  // of 100; below that the encoding is guessed

  // A guess that may well be wrong.
  bool doubtful() const { return confidence < 50; }
};

// Finds a text's encoding by its byte-order mark, else UTF-8 where it is well-formed, else as ICU's
// detection guesses it. Nothing for what is no text: bytes that the found encoding does not allow,
// or that are U+0000 in it. Any thread.
std::optional<DecodedText> decodeText(std::string_view bytes);

}  // namespace vellora::companion
