#include "main/arguments.h"

#include <algorithm>
#include <cstddef>
#include <system_error>

#include "base/text.h"

namespace vellora {

namespace {

Arguments::const_iterator findFlag(const Arguments& arguments, std::string_view flag) {
  return std::find_if(arguments.begin(), arguments.end(),
                      [flag](const std::string& argument) { return textEquals(argument, flag); });
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

std::filesystem::path fileLocation(std::string_view path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string_view::npos) {
    path = path.substr(0, 1);
  } else {
    path = path.substr(0, end + 1);
  }
  const std::filesystem::path given(path);
  if (given.is_absolute()) return given;
  std::error_code error;
  const std::filesystem::path current = std::filesystem::current_path(error);
  if (error) return given;
  return given.empty() ? current : current / given;
}

}  // namespace vellora
