#include "library/songs_of_program.h"

#include <system_error>

namespace vellora::demo {

std::filesystem::path songsOfProgram() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path() / VELLORA_SONGS_FROM_PROGRAM).lexically_normal();
}

}  // namespace vellora::demo
