#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/files.h"
#include "fuzz/fuzz_targets.h"

// fuzz_replay TARGET FOLDER: runs the target with each file of the folder. A broken promise ends
// the process; so the file's name is told first. A folder without files proves nothing.
int main(int count, char** arguments) {
  const vellora::FuzzTarget* const target =
      count == 3 ? vellora::fuzzTarget(arguments[1]) : nullptr;
  if (target == nullptr) {
    std::fputs("usage: fuzz_replay TARGET FOLDER\n", stderr);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[2])) {
    files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const auto& file : files) {
    std::printf("%s\n", file.filename().c_str());
    std::fflush(stdout);
    const auto bytes = vellora::readWholeFile(file);
    if (!bytes) {
      std::fputs("cannot be read\n", stderr);
      return 1;
    }
    target->run(*bytes);
  }
  std::printf("%zu files\n", files.size());
  return files.empty() ? 1 : 0;
}
