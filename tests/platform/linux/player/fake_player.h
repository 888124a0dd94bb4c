#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "platform/linux/player/fake_player_setup.h"

namespace vellora {

// A player on the session bus as MPRIS D-Bus Interface Specification 2.2 describes one, in a
// process of its own, so that it can be stopped. It keeps a log of the methods called, one line
// each, arguments after the name.
class FakePlayer {
 public:
  using Track = FakePlayerTrack;
  using Setup = FakePlayerSetup;

  // Returns once the player has its name.
  explicit FakePlayer(const Setup& setup);
  ~FakePlayer();
  FakePlayer(const FakePlayer&) = delete;
  FakePlayer& operator=(const FakePlayer&) = delete;

  pid_t process() const { return process_; }

  // What was called since the last look.
  std::vector<std::string> log();

  // SIGSTOP and SIGCONT; the first returns when the process stands still.
  void stop();
  void wake();
  // Ends the process, if it has not been ended yet.
  void end();

 private:
  pid_t process_ = 0;
  int log_ = -1;
};

}  // namespace vellora
