#include "base/environment.h"

#include <cstdlib>

namespace vellora {

std::optional<std::string> environmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::optional<std::filesystem::path> environmentFolder(const char* name) {
  const auto value = environmentVariable(name);
  if (!value || value->front() != '/') return std::nullopt;
  return *value;
}

}  // namespace vellora
