// What it costs to know the songs of a folder: the first look, one without changes, a search for a
// song that is not there, and an idle look.
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include "companion/library/library.h"
#include "platform/system_clock.h"

namespace {

using vellora::companion::Library;

double processorTime() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

// Milliseconds of wall and processor time that `work` takes.
template <typename Work>
void tell(const char* what, Work work) {
  const auto begin = std::chrono::steady_clock::now();
  const double processor = processorTime();
  work();
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
  std::printf("%-24s %8.1f ms, %8.1f ms of the processor\n", what, wall.count() * 1000,
              (processorTime() - processor) * 1000);
}

void lookThrough(Library& library) {
  const vellora::SystemClock clock;
  while (library.looking()) library.look(clock.now());
}

std::string resident() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return line.substr(6);
  }
  return "?";
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fprintf(stderr, "usage: library_reader FOLDER\n");
    return 2;
  }
  Library library(words[1], "de");
  tell("first look", [&] { lookThrough(library); });
  for (int i = 0; i < 3; ++i) {
    tell("without changes", [&] {
      library.beginLook();
      lookThrough(library);
    });
  }
  tell("search in vain", [&] { library.find("Nothing", "Nobody"); });
  const vellora::SystemClock clock;
  tell("100 idle looks", [&] {
    for (int i = 0; i < 100; ++i) library.lookIdly(clock.now());
  });
  std::printf("%zu songs, %zu folders and %zu files opened; at most%s resident\n",
              library.songs().size(), library.work().folders, library.work().files,
              resident().c_str());
}
