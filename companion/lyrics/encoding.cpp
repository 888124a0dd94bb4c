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

struct Guess {
  std::string encoding;
  int confidence = 0;
};

std::optional<Guess> guess(std::string_view bytes) {
  UErrorCode error = U_ZERO_ERROR;
  const DetectorPtr detector(ucsdet_open(&error));
  const auto size = static_cast<std::int32_t>(std::min(bytes.size(), detectedBytes));
  ucsdet_setText(detector.get(), bytes.data(), size, &error);
  const UCharsetMatch* const match = ucsdet_detect(detector.get(), &error);
  if (U_FAILURE(error) || match == nullptr) return std::nullopt;
  const char* const name = ucsdet_getName(match, &error);
  const std::int32_t confidence = ucsdet_getConfidence(match, &error);
  if (U_FAILURE(error) || name == nullptr) return std::nullopt;
  return Guess{name, std::min(confidence, 99)};
}

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
  DecodedText result{{}, "UTF-8", 100};
  const auto* const mark = std::find_if(marks.begin(), marks.end(), [&](const Mark& candidate) {
    return bytes.starts_with(candidate.bytes);
  });
  if (mark != marks.end()) {
    bytes.remove_prefix(mark->bytes.size());
    result.encoding = mark->encoding;
  } else if (!isWellFormed(bytes) || bytes.find('\0') != std::string_view::npos) {
    // UTF-16 without a mark is well-formed UTF-8 as long as its letters are ASCII.
    auto guessed = guess(bytes);
    if (!guessed) return std::nullopt;
    result.encoding = std::move(guessed->encoding);
    result.confidence = guessed->confidence;
  }
  if (result.encoding == "UTF-8") {
    if (!isWellFormed(bytes)) return std::nullopt;
    result.text = bytes;
  } else {
    auto text = converted(result.encoding, bytes);
    if (!text) return std::nullopt;
    result.text = *std::move(text);
  }
  if (result.text.find('\0') != std::string::npos) return std::nullopt;
  return result;
}

}  // namespace vellora::companion
