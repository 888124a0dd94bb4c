#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz_targets.h"

namespace {

const vellora::FuzzTarget* chosen = nullptr;

}  // namespace

// libFuzzer's two entries (LLVM, "libFuzzer – a library for coverage-guided fuzz testing"). The
// target is named by the environment, which the processes that a merge starts have too.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const char* const name = std::getenv("VELLORA_FUZZ_TARGET");
  chosen = vellora::fuzzTarget(name != nullptr ? name : "");
  if (chosen != nullptr) return 0;
  std::fputs("VELLORA_FUZZ_TARGET has to be one of:\n", stderr);
  for (const auto& target : vellora::fuzzTargets) {
    std::fprintf(stderr, "  %s\n", target.name.data());
  }
  std::exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  chosen->run({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
