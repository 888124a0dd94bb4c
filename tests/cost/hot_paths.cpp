// Runs the hot paths one after the other, each once before it is counted: what is remembered from
// then on is there. Prints a line for each, "TURNS NAME", and fails where a result is not the right
// one. Under callgrind, which is asked for by `check_costs`, only what is counted is collected, and
// each path has a dump of its own, named like it; without it, callgrind's requests do nothing.
#include <cstdio>
#include <vector>

#include <valgrind/callgrind.h>

#include "cost/hot_path.h"

namespace {

bool runCounted(const vellora::HotPath& path) {
  bool isRight = true;
  CALLGRIND_TOGGLE_COLLECT;
  for (int turn = 0; turn < path.turns; ++turn) isRight = path.run() && isRight;
  CALLGRIND_TOGGLE_COLLECT;
  CALLGRIND_DUMP_STATS_AT(path.name.c_str());
  return isRight;
}

}  // namespace

int main() {
  using namespace vellora;
  int status = 0;
  for (auto make : {linePaths, windowPaths, picturePaths}) {
    for (const HotPath& path : make()) {
      const bool isRight = path.run() && runCounted(path);
      if (!isRight) status = 1;
      std::printf("%d %s%s\n", path.turns, path.name.c_str(), isRight ? "" : ": WRONG");
    }
  }
  return status;
}
