// What following a player takes at the very least: as often as the overlay ticks it reads SNAPSHOT
// and, with a PLAYER (a process), asks that for its window's state and the places of sixteen rows,
// all at once and over its own bus, and throws the answers away. Nothing is understood, nothing
// drawn. Until it is ended.
//
//   least_follower SNAPSHOT [PLAYER]
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include "wire_floor.h"

namespace {

using vellora::wire::BusPtr;
using vellora::wire::Objects;

constexpr std::int64_t tick = 120'000'000;  // nanoseconds
constexpr std::size_t rowsInView = 16;

// A timer that is due at each tick; -1 where there is none.
int startTicking() {
  const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
  const itimerspec each{{0, tick}, {0, tick}};
  return timer < 0 || timerfd_settime(timer, 0, &each, nullptr) != 0 ? -1 : timer;
}

bool readFile(const char* path) {
  static std::array<char, 1 << 16> bytes;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  while (read(file, bytes.data(), bytes.size()) > 0) continue;
  close(file);
  return true;
}

int complain(const char* what) {
  std::fprintf(stderr, "least_follower: %s\n", what);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::fputs("usage: least_follower SNAPSHOT [PLAYER]\n", stderr);
    return 2;
  }
  BusPtr player;
  Objects objects;
  if (argc == 3) {
    player = vellora::wire::connectDirectly(std::atoi(argv[2]));
    if (!player) return complain("the player has no bus of its own");
    objects = vellora::wire::objectsOf(player.get());
    if (objects.placed.size() < rowsInView) return complain("the player shows too few rows");
    objects.placed.resize(rowsInView);
  }
  const int timer = startTicking();
  if (timer < 0) return complain("no timer");
  std::uint64_t ticks = 0;
  while (read(timer, &ticks, sizeof ticks) == sizeof ticks) {
    if (!readFile(argv[1])) return complain("the snapshot cannot be read");
    if (player && !vellora::wire::askPlaces(player.get(), objects)) {
      return complain("the player does not answer");
    }
  }
  return complain("the timer stopped");
}
