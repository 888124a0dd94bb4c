#pragma once

#include <string>
#include <vector>

#include <sys/wait.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// What a program left that ran to its end.
struct Outcome {
  int status = -1;  // -1 where it could not be started or a signal ended it
  std::string output;
  std::string errors;
};

// Runs a program of PATH or of a path, with this process's environment.
inline Outcome runProgram(std::vector<std::string> arguments) {
  std::vector<char*> pointers;
  for (auto& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  gchar *output = nullptr, *errors = nullptr;
  gint status = 0;
  Outcome outcome;
  if (g_spawn_sync(nullptr, pointers.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr,
                   &output, &errors, &status, nullptr) == FALSE) {
    return outcome;
  }
  const GCharPtr heldOutput(output), heldErrors(errors);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  outcome.output = output;
  outcome.errors = errors;
  return outcome;
}

}  // namespace vellora
