#include "platform/linux/players/nearest_word.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
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

std::size_t distance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row;  // of each beginning of `other` from the beginning of `one`
  for (std::size_t j = 0; j <= other.size(); ++j) row.push_back(j);
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
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
