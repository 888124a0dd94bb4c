#pragma once

#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "faults/fault_plan.h"

namespace vellora::faults {

// How a case is named where it fails.
inline std::string describe(const Fault& fault, const Call& call) {
  std::string text = "call " + std::to_string(fault.call) + ", " + call.function;
  if (!call.path.empty()) text += "(" + call.path + ")";
  text += fault.error != 0 ? std::string(": ") + std::strerror(fault.error)
                           : ": of " + std::to_string(fault.bytes) + " bytes";
  return text + (fault.lasting ? ", and so all later ones" : "");
}

// Every way in which this call can go wrong.
inline std::vector<Fault> faultsOf(std::size_t number, const Call& call) {
  std::vector<Fault> faults;
  for (const bool lasting : {false, true}) {
    for (const int error : errorsOf(call.function)) {
      // A call that is interrupted for ever is tried for ever.
      if (!lasting || error != EINTR) faults.push_back({number, error, 0, lasting});
    }
    if (call.function == "read" || call.function == "write") {
      for (const std::size_t bytes : {0, 1, 40}) faults.push_back({number, 0, bytes, lasting});
    }
  }
  return faults;
}

// Runs `scenario` with every call failing in turn, in every way. The scenario is given the fault,
// makes its calls between `begin` and `end`, and returns them. The calls of the first run, which
// nothing disturbs, are the ones that fail later; the result says how many runs there were of each
// function.
inline std::map<std::string, int> withEveryFault(
    const std::function<std::vector<Call>(const Fault&)>& scenario) {
  const std::vector<Call> calls = scenario({});
  std::map<std::string, int> runs;
  for (std::size_t number = 1; number <= calls.size(); ++number) {
    const Call& call = calls[number - 1];
    for (const Fault& fault : faultsOf(number, call)) {
      SCOPED_TRACE(describe(fault, call));
      scenario(fault);
      ++runs[call.function];
      if (testing::Test::HasFailure()) return runs;  // one is enough to look into
    }
  }
  return runs;
}

// The descriptors that the process has open.
inline std::ptrdiff_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

}  // namespace vellora::faults
