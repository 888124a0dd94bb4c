#include "main/arguments.h"

#include <algorithm>

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

}  // namespace vellora
