#pragma once

#include <string_view>
#include <vector>

namespace vellora::companion {

// A word one of whose characters is read in it otherwise than mostly.
struct WordReading {
  std::string_view word;
  std::string_view pinyin;
};

// Those that songs have most, in both scripts. Where one begins as another does, the longer stands
// before the shorter.
std::vector<WordReading> wordReadings();

}  // namespace vellora::companion
