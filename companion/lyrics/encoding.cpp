#include "companion/lyrics/encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include "base/utf8.h"

namespace vellora::companion {
namespace {

struct CloseDetector {
  void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
};
struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using DetectorPtr = std::unique_ptr<UCharsetDetector, CloseDetector>;
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

// As much as a guess needs; ICU looks at every byte that it is given.
constexpr std::size_t detectedBytes = std::size_t{256} * 1024;

// Nothing where the bytes are not of that encoding.
std::optional<std::string> converted(const std::string& encoding, std::string_view bytes) {
  UErrorCode error = U_ZERO_ERROR;
  const ConverterPtr from(ucnv_open(encoding.c_str(), &error));
  const ConverterPtr to(ucnv_open("UTF-8", &error));
  ucnv_setToUCallBack(from.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  if (U_FAILURE(error)) return std::nullopt;

  std::string text;
  std::array<char, 4096> chunk{};
  std::array<UChar, 1024> pivot{};
  UChar* pivotSource = pivot.data();
  UChar* pivotTarget = pivot.data();
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  bool first = true;
  do {
    char* target = chunk.data();
    error = U_ZERO_ERROR;
    ucnv_convertEx(to.get(), from.get(), &target, target + chunk.size(), &source, end, pivot.data(),
                   &pivotSource, &pivotTarget, pivot.data() + pivot.size(), first ? 1 : 0, 1,
                   &error);
    first = false;
    text.append(chunk.data(), target);
  } while (error == U_BUFFER_OVERFLOW_ERROR);
  if (U_FAILURE(error)) return std::nullopt;
  return text;
}

// The likeliest encoding of which the bytes are a text.
std::optional<DecodedText> guessed(std::string_view bytes) {
  UErrorCode error = U_ZERO_ERROR;
  const DetectorPtr detector(ucsdet_open(&error));
  const auto size = static_cast<std::int32_t>(std::min(bytes.size(), detectedBytes));
  ucsdet_setText(detector.get(), bytes.data(), size, &error);
  std::int32_t count = 0;
  const UCharsetMatch** const matches = ucsdet_detectAll(detector.get(), &count, &error);
  if (U_FAILURE(error)) return std::nullopt;
  for (std::int32_t i = 0; i < count; ++i) {
    const char* const name = ucsdet_getName(matches[i], &error);
    const std::int32_t confidence = ucsdet_getConfidence(matches[i], &error);
    if (U_FAILURE(error) || name == nullptr) return std::nullopt;
    // A text of one or two lines looks like many things, but one of wide characters has a blank or
    // a sign among them, and these have a byte of zero.
    const bool wide = std::string_view(name).starts_with("UTF-16") ||
                      std::string_view(name).starts_with("UTF-32");
    if (wide && bytes.find('\0') == std::string_view::npos) continue;
    auto text = converted(name, bytes);
    if (text && text->find('\0') == std::string::npos) {
      return DecodedText{*std::move(text), name, std::min(confidence, 99)};
    }
  }
  // Nothing else is left of a word or two; any byte but five is a letter or a sign there.
  if (bytes.find('\0') != std::string_view::npos) return std::nullopt;
  auto text = converted("windows-1252", bytes);
  if (text) return DecodedText{*std::move(text), "windows-1252", 1};
  return std::nullopt;
}

struct Mark {
  std::string_view bytes;
  const char* encoding;
};

// The Unicode standard, table 2-4; the longer marks first.
constexpr std::array<Mark, 5> marks{{{{"\x00\x00\xFE\xFF", 4}, "UTF-32BE"},
                                     {{"\xFF\xFE\x00\x00", 4}, "UTF-32LE"},
                                     {{"\xEF\xBB\xBF", 3}, "UTF-8"},
                                     {{"\xFE\xFF", 2}, "UTF-16BE"},
                                     {{"\xFF\xFE", 2}, "UTF-16LE"}}};

}  // namespace

std::optional<DecodedText> decodeText(std::string_view bytes) {
  const auto* const mark = std::ranges::find_if(
      marks, [&](const Mark& candidate) { return bytes.starts_with(candidate.bytes); });
  std::string encoding = "UTF-8";
  if (mark != marks.end()) {
    bytes.remove_prefix(mark->bytes.size());
    encoding = mark->encoding;
  } else if (!isWellFormed(bytes) || bytes.find('\0') != std::string_view::npos) {
    // UTF-16 without a mark is well-formed UTF-8 as long as its letters are ASCII.
    return guessed(bytes);
  }
  std::optional<std::string> text;
  if (encoding != "UTF-8") {
    text = converted(encoding, bytes);
  } else if (isWellFormed(bytes)) {
    text = bytes;
  }
  if (!text || text->find('\0') != std::string::npos) return std::nullopt;
  return DecodedText{*std::move(text), std::move(encoding), 100};
}

}  // namespace vellora::companion
