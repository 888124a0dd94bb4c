#include "base/nearest_word.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace vellora {

namespace {

std::string lettersOf(std::string_view word) {
  std::string letters;
  for (const char c : word) {
    if (c == ' ' || c == '-' || c == '_') continue;
    letters += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return letters;
}

// Of each beginning of `one` (rows) from each beginning of `other`.
std::size_t distance(std::string_view one, std::string_view other) {
  const std::size_t width = other.size() + 1;
  std::vector<std::size_t> table((one.size() + 1) * width);
  const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& {
    return table[i * width + j];
  };
  for (std::size_t i = 0; i <= one.size(); ++i) {
    for (std::size_t j = 0; j <= other.size(); ++j) {
      if (i == 0 || j == 0) {
        at(i, j) = i + j;
        continue;
      }
      const bool isSame = one[i - 1] == other[j - 1];
      at(i, j) =
          std::min({at(i - 1, j - 1) + (isSame ? 0 : 1), at(i - 1, j) + 1, at(i, j - 1) + 1});
      if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
      }
    }
  }
  return table.back();
}

}  // namespace

std::string_view nearestWord(std::string_view word, std::span<const std::string_view> words) {
  const std::string letters = lettersOf(word);
  std::string_view nearest;
  std::size_t least = 0;
  for (const std::string_view candidate : words) {
    const std::string others = lettersOf(candidate);
    // Also spares long texts the work: none of the words is long.
    const std::size_t most = others.size() / 3;
    if (letters.size() > others.size() + most) continue;
    const std::size_t far = distance(letters, others);
    if (far <= most && (nearest.empty() || far < least)) {
      nearest = candidate;
      least = far;
    }
  }
  return nearest;
}

}  // namespace vellora
