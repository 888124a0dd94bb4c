#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// The process's argument vector, the program path first.
using Arguments = std::vector<std::string>;

// The flags that the program knows; it ignores every other argument.
struct Flags {
  static constexpr std::string_view renderTest = "--render-test";
  static constexpr std::string_view output = "--output";
  static constexpr std::string_view diagnose = "--diagnose";
  static constexpr std::string_view snapshot = "--snapshot";
};

// Whether any argument is exactly that flag.
bool hasFlag(const Arguments& arguments, std::string_view flag);

// The argument after the flag's first occurrence, whatever it is; nothing where the flag is absent
// or stands last. Later occurrences are not looked at.
std::optional<std::string> flagValue(const Arguments& arguments, std::string_view flag);

// The flag's value as an absolute path, a relative one taken from the current directory. The path
// is not checked in any way: no file need be there, and "~" and ".." mean nothing special.
std::optional<std::filesystem::path> locationValue(const Arguments& arguments,
                                                   std::string_view flag);

}  // namespace vellora
