#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "base/rect.h"

namespace vellora {

// Ends the process, and with it the fuzzer's run, where a promise is broken.
inline void require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

// Takes values off the front of a target's bytes. What is no longer there reads as zeros and empty
// texts.
class FuzzInput {
 public:
  explicit FuzzInput(std::string_view bytes) : bytes_(bytes) {}

  bool isEmpty() const { return bytes_.empty(); }
  std::string_view rest() const { return bytes_; }

  template <typename Number>
  Number take() {
    Number number{};
    const std::string_view taken = takeBytes(sizeof(number));
    if (!taken.empty()) std::memcpy(&number, taken.data(), taken.size());
    return number;
  }
  // From 0 to `end` - 1.
  std::size_t below(std::size_t end) { return take<std::uint8_t>() % end; }
  bool flag() { return below(2) == 1; }
  double number() { return take<double>(); }

  std::string_view takeBytes(std::size_t count) {
    const std::string_view taken = bytes_.substr(0, std::min(count, bytes_.size()));
    bytes_.remove_prefix(taken.size());
    return taken;
  }
  // Up to the next `end`, which is taken off as well.
  std::string_view takeUntil(char end) {
    const std::string_view taken = bytes_.substr(0, bytes_.find(end));
    bytes_.remove_prefix(std::min(taken.size() + 1, bytes_.size()));
    return taken;
  }

 private:
  std::string_view bytes_;
};

// A rectangle of four numbers, each as `number` takes it off the input.
inline Rect rectangleOf(FuzzInput& input, double (*number)(FuzzInput& input)) {
  Rect rect;
  rect.x = number(input);
  rect.y = number(input);
  rect.width = number(input);
  rect.height = number(input);
  return rect;
}

}  // namespace vellora
