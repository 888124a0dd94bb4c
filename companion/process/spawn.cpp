#include "companion/process/spawn.h"

#include <string_view>

#include <signal.h>
#include <spawn.h>
#include <unistd.h>

extern char** environ;

namespace vellora::companion {
namespace {

class Spawning {
 public:
  explicit Spawning(StandardDescriptors descriptors) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, descriptors.input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, descriptors.output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, descriptors.error, STDERR_FILENO);
    posix_spawnattr_init(&attributes);
    // The signals that this program holds back shall reach the other.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
  }
  ~Spawning() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  Spawning(const Spawning&) = delete;
  Spawning& operator=(const Spawning&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

std::string_view nameOf(std::string_view entry) { return entry.substr(0, entry.find('=')); }

// This program's environment with the given entries in the place of those of the same names.
std::vector<char*> environmentWith(std::vector<std::string>& entries) {
  std::vector<char*> result;
  for (char** own = environ; *own != nullptr; ++own) {
    bool replaced = false;
    for (const std::string& entry : entries) replaced = replaced || nameOf(*own) == nameOf(entry);
    if (!replaced) result.push_back(*own);
  }
  for (std::string& entry : entries) result.push_back(entry.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

std::error_code spawn(std::vector<std::string> words, std::vector<std::string> environment,
                      StandardDescriptors descriptors, pid_t& id) {
  if (words.empty()) return std::make_error_code(std::errc::invalid_argument);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const std::vector<char*> all = environmentWith(environment);
  const Spawning spawning(descriptors);
  const int reason = posix_spawnp(&id, arguments[0], &spawning.actions, &spawning.attributes,
                                  arguments.data(), all.data());
  return {reason, std::generic_category()};
}

}  // namespace vellora::companion
