#include "main/arguments.h"

#include <algorithm>
#include <system_error>

#include "base/text.h"

namespace vellora {

namespace fs = std::filesystem;

namespace {

Arguments::const_iterator findFlag(const Arguments& arguments, std::string_view flag) {
  return std::ranges::find_if(
      arguments, [flag](const std::string& argument) { return textEquals(argument, flag); });
}

fs::path absoluteLocation(const std::string& path) {
  fs::path location(path.empty() ? "." : path);
  if (location.is_absolute()) return location;
  std::error_code error;
  const fs::path folder = fs::current_path(error);
  return error ? location : folder / location;
}

}  // namespace

bool hasFlag(const Arguments& arguments, std::string_view flag) {
  return findFlag(arguments, flag) != arguments.end();
}

std::optional<std::string> flagValue(const Arguments& arguments, std::string_view flag) {
  const auto found = findFlag(arguments, flag);
  if (found == arguments.end() || found + 1 == arguments.end()) return std::nullopt;
  return *(found + 1);
}

std::optional<fs::path> locationValue(const Arguments& arguments, std::string_view flag) {
  const std::optional<std::string> value = flagValue(arguments, flag);
  if (!value) return std::nullopt;
  return absoluteLocation(*value);
}

}  // namespace vellora
