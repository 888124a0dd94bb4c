#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vellora {

// The value of an environment variable; nothing where it is not set or empty, which the XDG Base
// Directory Specification and most programs take for the same. Any thread, while none sets one.
std::optional<std::string> environmentVariable(const char* name);

// The folder that an environment variable names, which that specification wants as an absolute
// path; nothing for anything else. Any thread, as above.
std::optional<std::filesystem::path> environmentFolder(const char* name);

}  // namespace vellora
