#pragma once

#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "golden/golden_table.h"

namespace vellora::golden {

inline constexpr char32_t lastCharacter = 0x10FFFF;

// The tables here list their sets whole, so that they also say which characters are outside. Tables
// in another folder may be samples.
inline void checkSet(const std::string& table, const std::function<bool(char32_t)>& contains) {
  std::vector<bool> listed(lastCharacter + 1);
  everyRow(table, 2, [&](const Row& row) {
    const char32_t first = codePoint(row[0]);
    const char32_t last = codePoint(row[1]);
    std::ostringstream wrong;
    if (first > last || last > lastCharacter) return std::string("no range");
    for (char32_t c = first; c <= last; ++c) {
      listed[c] = true;
      if (!contains(c)) wrong << std::hex << static_cast<unsigned>(c) << " is missing; ";
    }
    return wrong.str();
  });
  if (std::getenv("VELLORA_GOLDENS") != nullptr) return;
  std::size_t extra = 0;
  for (char32_t c = 0; c <= lastCharacter; ++c) {
    if (listed[c] || !contains(c)) continue;
    if (++extra <= 20)
      ADD_FAILURE() << std::hex << static_cast<unsigned>(c) << " is not in " << table;
  }
  EXPECT_EQ(extra, 0U) << table;
}

}  // namespace vellora::golden
