#include "platform/linux/player/fake_player.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellora {
namespace {

constexpr int logDescriptor = 3;

}  // namespace

FakePlayer::FakePlayer(const Setup& setup) {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) std::abort();
  std::string program = VELLORA_FAKE_PLAYER;
  std::string argument = argumentText(setup);
  char* arguments[] = {program.data(), argument.data(), nullptr};
  process_ = ::fork();
  if (process_ == 0) {
    // Nothing but calls that are safe after a fork among threads.
    if (ends[1] != logDescriptor) ::dup2(ends[1], logDescriptor);
    ::fcntl(logDescriptor, F_SETFD, 0);
    ::execv(arguments[0], arguments);
    ::_exit(127);
  }
  ::close(ends[1]);
  log_ = ends[0];
  char ready[16];
  if (::recv(log_, ready, sizeof ready, 0) <= 0) std::abort();
}

FakePlayer::~FakePlayer() {
  end();
  ::close(log_);
}

std::vector<std::string> FakePlayer::log() {
  std::vector<std::string> lines;
  char line[256];
  for (ssize_t size; (size = ::recv(log_, line, sizeof line, MSG_DONTWAIT)) > 0;) {
    lines.emplace_back(line, static_cast<std::size_t>(size));
  }
  return lines;
}

void FakePlayer::stop() {
  ::kill(process_, SIGSTOP);
  int status = 0;
  ::waitpid(process_, &status, WUNTRACED);
}

void FakePlayer::wake() { ::kill(process_, SIGCONT); }

void FakePlayer::end() {
  if (process_ == 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = 0;
}

}  // namespace vellora
