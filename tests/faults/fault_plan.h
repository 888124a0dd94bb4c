#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Which file call goes wrong, and how. The calls themselves are in file_calls.cpp, a library that
// stands before the system's own: a program that links it makes its file calls there.
namespace vellora::faults {

// What the chosen call does in the place of its work.
struct Fault {
  std::size_t call = 0;   // its number among the calls since `begin`, from 1; 0: none
  int error = 0;          // fails with this errno; 0: succeeds with `bytes`
  std::size_t bytes = 0;  // of a read or write, at most
  bool lasting = false;   // and so does every later call of the same function
};

struct Call {
  std::string function;
  std::string path;  // or empty, where the call names none
};

// From here on the calls of this thread are counted, and `fault` happens among them.
void begin(const Fault& fault);
// Back to the ordinary. The calls since `begin`.
std::vector<Call> end();

// The errors that a call of that function can give (Linux manual pages, section 2), those left out
// that only a mistake of the caller explains.
const std::vector<int>& errorsOf(std::string_view function);

// For the calls: counts this one, and tells what goes wrong with it.
std::optional<Fault> next(std::string_view function, std::string_view path = {});

}  // namespace vellora::faults
