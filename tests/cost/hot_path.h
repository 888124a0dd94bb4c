#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vellora {

// Something that runs often while a song is followed, and how to run it once, always with the same
// inputs.
struct HotPath {
  std::string name;
  int turns;                  // that are counted together
  std::function<bool()> run;  // whether the result is the one that it should be
};

// All of them, by what they work on; made when they are called, so that what they are run with is
// not counted.
std::vector<HotPath> linePaths();
std::vector<HotPath> windowPaths();
std::vector<HotPath> picturePaths();

}  // namespace vellora
