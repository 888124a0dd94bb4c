#include "platform/linux/loop/bounded_end.h"

#include <csignal>
#include <cstdlib>

#include <unistd.h>

namespace vellora {
namespace {

constexpr unsigned mostSeconds = 2;

using Handler = void (*)(int);

// GLib has one for all signals.
Handler glibHandler() {
  static const Handler found = [] {
    struct sigaction now {};
    sigaction(SIGTERM, nullptr, &now);
    return now.sa_handler;
  }();
  return found;
}

// Safe in a signal's handler, as is the next.
void endSoon(int signal) {
  alarm(mostSeconds);
  glibHandler()(signal);
}

void endNow(int) { _exit(EXIT_SUCCESS); }

void handle(int signal, Handler handler) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

}  // namespace

BoundedEnd::BoundedEnd() {
  glibHandler();  // before it is replaced
  handle(SIGALRM, endNow);
  handle(SIGTERM, endSoon);
  handle(SIGINT, endSoon);
}

BoundedEnd::~BoundedEnd() {
  alarm(0);
  handle(SIGALRM, SIG_DFL);
}

}  // namespace vellora
