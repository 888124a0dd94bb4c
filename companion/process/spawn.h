#pragma once

#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace vellora::companion {

// What a program that is started gets as standard input, output and error: descriptors, of which
// only these reach it if the others are closed on exec.
struct StandardDescriptors {
  int input;
  int output;
  int error;
};

// Starts a program with a list of words, of which the first is its path, or its name, looked for in
// PATH. It leads a process group of its own, so that a terminal's keys do not reach it, and no
// signal is blocked in it. `environment`: "NAME=value" for it, beside this one's own. Its process
// number goes into `id`. The error, where it cannot be started. Any thread.
std::error_code spawn(std::vector<std::string> words, std::vector<std::string> environment,
                      StandardDescriptors descriptors, pid_t& id);

}  // namespace vellora::companion
