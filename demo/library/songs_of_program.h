#pragma once

#include <filesystem>

namespace vellora::demo {

// The folder of the songs that came with the running program. It lies at a fixed place relative to
// the program, in the build's tree and in an installation alike; it need not exist.
std::filesystem::path songsOfProgram();

}  // namespace vellora::demo
