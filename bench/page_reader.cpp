// page_reader PROCESS FOLDER READINGS: reads a browser's page as the overlay does, as often as it
// does, with the descriptions of the folder, and says how long that takes; beside it a whole walk
// of the browser's window, as a player without a description is read. Two lines "mark" on standard
// error stand around the readings that are counted as warm.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <unistd.h>

#include "music/lyrics_layout_reader.h"
#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players/player_windows.h"
#include "platform/system_clock.h"

namespace {

using namespace vellora;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto tick = 120ms;
constexpr int warmingUp = 20;

struct Timed {
  double milliseconds = 0;
  std::size_t rows = 0;
};

Timed read(Accessibility& accessibility, std::int32_t process, const ReadingLimits& limits) {
  const SystemClock clock;
  const auto begin = Clock::now();
  const auto layout = readMusic(process, accessibility, clock, musicPlayer, limits);
  const std::chrono::duration<double, std::milli> taken = Clock::now() - begin;
  return {taken.count(), layout ? layout->rows.size() : 0};
}

double at(const std::vector<double>& sorted, double share) {
  return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

void mark() {
  if (write(STDERR_FILENO, "mark\n", 5) != 5) std::abort();
}

int run(std::int32_t process, const char* folder, int readings) {
  const auto windows = std::make_shared<PlayerWindows>();
  windows->bringToFront({.process = process,
                         .descriptions = readDescriptions({folder}).descriptions,
                         .clientArea = {},
                         .scale = 1});
  const auto described = makeLinuxAccessibility(usualMemory, windows);
  Timed cold;
  double untilRows = 0;
  for (int i = 0; i < 100 && cold.rows == 0; ++i) {
    cold = read(*described, process, {});
    untilRows += cold.milliseconds;
    std::this_thread::sleep_for(tick);
  }
  if (cold.rows == 0) {
    std::puts("no rows were found");
    return 1;
  }
  // The search alone, on a browser that is awake: nothing is remembered in a new connection.
  const Timed anew = read(*makeLinuxAccessibility(usualMemory, windows), process, {});

  std::size_t rows = 0;  // of a page that has come to rest
  std::vector<double> warm;
  for (int i = 0; i < warmingUp + readings; ++i) {
    if (i == warmingUp) mark();
    std::this_thread::sleep_for(tick);
    const Timed one = read(*described, process, {});
    if (i < warmingUp) {
      rows = one.rows;
      continue;
    }
    if (one.rows != rows) std::printf("%zu rows instead of %zu\n", one.rows, rows);
    warm.push_back(one.milliseconds);
  }
  mark();
  std::ranges::sort(warm);

  ReadingLimits all;
  all.elements = 100'000;
  all.seconds = 30;
  all.depth = 1000;
  const auto plain = makeLinuxAccessibility(0s);
  std::vector<double> walks;
  for (int i = 0; i < 5; ++i) walks.push_back(read(*plain, process, all).milliseconds);
  std::ranges::sort(walks);
  std::printf(
      "%zu rows; first reading with rows after %.0f ms of reading; cold %.1f ms; warm median %.1f, "
      "90 of 100 within %.1f, worst %.1f ms; a whole walk %.0f ms\n",
      rows, untilRows, anew.milliseconds, at(warm, 0.5), at(warm, 0.9), warm.back(),
      at(walks, 0.5));
  return 0;
}

}  // namespace

int main(int count, char** values) {
  if (count != 4) {
    std::fputs("usage: page_reader PROCESS FOLDER READINGS\n", stderr);
    return 2;
  }
  return run(std::atoi(values[1]), values[2], std::atoi(values[3]));
}
