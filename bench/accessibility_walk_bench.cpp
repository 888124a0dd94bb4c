// A full walk of the 700 elements of a GTK window, beside the same walk through libatspi, and
// readings of windows with more and more rows in view. The program runs itself in a session of its
// own, where nothing else is on the accessibility bus.
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <atspi/atspi.h>
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include "music/lyrics_layout_reader.h"
#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/system_clock.h"
#include "wire_floor.h"

namespace {

using namespace vellora;

constexpr const char* inSession = "VELLORA_BENCH_IN_SESSION";
constexpr std::size_t elementBudget = 700;
// With what stands around them the window has exactly 700 elements.
constexpr int expectedRows = 688;
constexpr int usualHeight = 700;
// Time enough for a whole walk on a busy machine too.
constexpr ReadingLimits patient{.seconds = 5};
// More than any theme's button needs, in pixels.
constexpr int rowHeight = 44;

// The window's process; its input is held open for as long as it shall live.
class WindowProcess {
 public:
  WindowProcess(int rows, int height) : rows_(rows) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe(input.data()) != 0 || pipe(output.data()) != 0) std::abort();
    pid_ = fork();
    if (pid_ == 0) {
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      for (const int end : {input[0], input[1], output[0], output[1]}) close(end);
      execl(VELLORA_ACCESSIBLE_WINDOW, VELLORA_ACCESSIBLE_WINDOW, std::to_string(rows).c_str(),
            std::to_string(height).c_str(), nullptr);
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    keepAlive_ = input[1];
    char first = 0;
    isReady_ = read(output[0], &first, 1) == 1;
    close(output[0]);
  }
  ~WindowProcess() {
    close(keepAlive_);
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  WindowProcess(const WindowProcess&) = delete;
  WindowProcess& operator=(const WindowProcess&) = delete;

  pid_t pid() const { return pid_; }
  std::size_t rows() const { return static_cast<std::size_t>(rows_); }
  bool isReady() const { return isReady_; }

 private:
  int rows_;
  pid_t pid_ = -1;
  int keepAlive_ = -1;
  bool isReady_ = false;
};

// CPU time of the window's process so far, in seconds: /proc/PID/schedstat, nanoseconds on a
// processor.
double processorTime(pid_t pid) {
  FILE* file = std::fopen(("/proc/" + std::to_string(pid) + "/schedstat").c_str(), "re");
  if (!file) return 0;
  unsigned long long nanoseconds = 0;
  if (std::fscanf(file, "%llu", &nanoseconds) != 1) nanoseconds = 0;
  std::fclose(file);
  return static_cast<double>(nanoseconds) / 1e9;
}

// The walk's queries over libatspi.
class LibatspiWalk {
 public:
  std::size_t elements = 0;
  std::size_t rows = 0;

  void visit(AtspiAccessible* element, bool inLyrics) {
    if (elements >= elementBudget) return;
    ++elements;
    const AtspiRole role = atspi_accessible_get_role(element, nullptr);
    const std::string description = text(atspi_accessible_get_description(element, nullptr));
    const std::string name = text(atspi_accessible_get_name(element, nullptr));
    text(atspi_accessible_get_accessible_id(element, nullptr));
    inLyrics = inLyrics || description == "Lyrics" || name == "Lyrics";
    if (inLyrics && (role == ATSPI_ROLE_PUSH_BUTTON || role == ATSPI_ROLE_SCROLL_PANE)) {
      AtspiComponent* component = atspi_accessible_get_component_iface(element);
      AtspiRect* extents =
          component ? atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, nullptr)
                    : nullptr;
      if (role == ATSPI_ROLE_PUSH_BUTTON && extents && extents->width > 0) ++rows;
      g_free(extents);
      if (component) g_object_unref(component);
    }
    const int count = atspi_accessible_get_child_count(element, nullptr);
    for (int i = 0; i < count; ++i) {
      AtspiAccessible* child = atspi_accessible_get_child_at_index(element, i, nullptr);
      if (!child) continue;
      visit(child, inLyrics);
      g_object_unref(child);
    }
  }

 private:
  static std::string text(char* value) {
    std::string result = value ? value : "";
    g_free(value);
    return result;
  }
};

AtspiAccessible* findWithLibatspi(pid_t pid) {
  AtspiAccessible* desktop = atspi_get_desktop(0);
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  for (int i = 0; i < count; ++i) {
    AtspiAccessible* program = atspi_accessible_get_child_at_index(desktop, i, nullptr);
    if (program && atspi_accessible_get_process_id(program, nullptr) == static_cast<guint>(pid)) {
      return program;
    }
  }
  return nullptr;
}

// Nothing is remembered from one walk to the next where the memory lasts no time at all; else the
// first walk is not measured.
void walkOverTheSeam(benchmark::State& state, const WindowProcess* window,
                     std::chrono::seconds longestMemory) {
  const pid_t pid = window->pid();
  const auto accessibility = makeLinuxAccessibility(longestMemory);
  const SystemClock clock;
  if (longestMemory.count() > 0) readMusic(pid, *accessibility, clock, musicPlayer, patient);
  const double before = processorTime(pid);
  for (auto _ : state) {
    const auto layout = readMusic(pid, *accessibility, clock, musicPlayer, patient);
    if (!layout || layout->rows.size() != window->rows() || layout->title.empty()) {
      state.SkipWithError("the reading is not whole");
      return;
    }
  }
  state.counters["player_ms"] =
      benchmark::Counter((processorTime(pid) - before) * 1e3, benchmark::Counter::kAvgIterations);
}

void walkWithLibatspi(benchmark::State& state, pid_t pid) {
  AtspiAccessible* program = findWithLibatspi(pid);
  if (!program) {
    state.SkipWithError("libatspi does not find the window");
    return;
  }
  const double before = processorTime(pid);
  for (auto _ : state) {
    atspi_accessible_clear_cache(program);
    LibatspiWalk walk;
    AtspiAccessible* window = atspi_accessible_get_child_at_index(program, 0, nullptr);
    walk.visit(window, false);
    g_object_unref(window);
    if (walk.elements != elementBudget || walk.rows != static_cast<std::size_t>(expectedRows)) {
      state.SkipWithError("libatspi's walk is not whole");
      break;
    }
  }
  state.counters["player_ms"] =
      benchmark::Counter((processorTime(pid) - before) * 1e3, benchmark::Counter::kAvgIterations);
  g_object_unref(program);
}

// Messages alone, those of a cold walk or those of a reading that remembers all but places: to the
// window itself, or to a process that has no window.
void askTheSame(benchmark::State& state, bool (*ask)(sd_bus*, const wire::Objects&), sd_bus* bus,
                const wire::Objects* objects, pid_t pid) {
  const double before = processorTime(pid);
  for (auto _ : state) {
    if (!ask(bus, *objects)) {
      state.SkipWithError("not all was answered");
      return;
    }
  }
  state.counters["player_ms"] =
      benchmark::Counter((processorTime(pid) - before) * 1e3, benchmark::Counter::kAvgIterations);
}

bool switchOnAccessibility() {
  const auto accessibility = makeLinuxAccessibility();
  if (accessibility->isTrusted()) return true;
  accessibility->requestTrust();
  // A new object's first answer waits for the session, which has the request before the question.
  return makeLinuxAccessibility()->isTrusted();
}

// The window is on the bus a little after it is on the screen.
bool awaitWholeReading(const WindowProcess& window) {
  const auto accessibility = makeLinuxAccessibility();
  const SystemClock clock;
  const double deadline = clock.now() + 10;
  while (clock.now() < deadline) {
    const auto layout = readMusic(window.pid(), *accessibility, clock, musicPlayer, patient);
    if (layout && layout->rows.size() == window.rows()) return true;
  }
  return false;
}

int runInSession(int argc, char** argv) {
  setenv(inSession, "1", 1);
  std::vector<char*> arguments;
  std::string session = VELLORA_SESSION;
  std::string compositor = "--no-compositor";
  arguments.push_back(session.data());
  arguments.push_back(compositor.data());
  arguments.insert(arguments.end(), argv, argv + argc);
  arguments.push_back(nullptr);
  execv(VELLORA_SESSION, arguments.data());
  std::perror(VELLORA_SESSION);
  return 127;
}

}  // namespace

int main(int argc, char** argv) {
  if (!std::getenv(inSession)) return runInSession(argc, argv);
  // Those of the second kind have all their rows in view.
  std::vector<std::unique_ptr<WindowProcess>> windows;
  windows.push_back(std::make_unique<WindowProcess>(expectedRows, usualHeight));
  for (const int rows : {15, 60, 150, 300}) {
    windows.push_back(std::make_unique<WindowProcess>(rows, rows * rowHeight));
  }
  bool isUp = switchOnAccessibility();
  for (const auto& window : windows) {
    isUp = isUp && window->isReady() && awaitWholeReading(*window);
  }
  if (!isUp || atspi_init() > 1) {
    std::fputs("the session is not up\n", stderr);
    return 1;
  }
  const WindowProcess* const whole = windows.front().get();
  std::vector<benchmark::internal::Benchmark*> registered{
      benchmark::RegisterBenchmark("walk_700_elements", walkOverTheSeam, whole,
                                   std::chrono::seconds(0)),
      benchmark::RegisterBenchmark("walk_700_elements_remembered", walkOverTheSeam, whole,
                                   std::chrono::hours(1)),
      benchmark::RegisterBenchmark("walk_700_elements_libatspi", walkWithLibatspi, whole->pid())};
  const wire::BusPtr direct = wire::connectDirectly(whole->pid());
  const wire::Objects objects = direct ? wire::objectsOf(direct.get()) : wire::Objects{};
  const wire::EmptyPeer emptyPeer;
  if (objects.all.size() == elementBudget) {
    registered.push_back(benchmark::RegisterBenchmark("same_messages_to_the_window", askTheSame,
                                                      wire::askAll, direct.get(), &objects,
                                                      whole->pid()));
    registered.push_back(benchmark::RegisterBenchmark("same_messages_to_an_empty_peer", askTheSame,
                                                      wire::askAll, emptyPeer.bus(), &objects,
                                                      emptyPeer.pid()));
  } else {
    std::fprintf(stderr, "over its own bus the window has %zu elements\n", objects.all.size());
  }
  std::vector<wire::BusPtr> buses;
  std::list<wire::Objects> rowsOfEach;
  for (std::size_t i = 1; i < windows.size(); ++i) {
    const WindowProcess& window = *windows[i];
    const std::string rows = std::to_string(window.rows());
    registered.push_back(benchmark::RegisterBenchmark(
        ("read_rows_in_view:" + rows).c_str(), walkOverTheSeam, &window, std::chrono::hours(1)));
    buses.push_back(wire::connectDirectly(window.pid()));
    if (!buses.back()) continue;
    rowsOfEach.push_back(wire::objectsOf(buses.back().get()));
    registered.push_back(benchmark::RegisterBenchmark(("same_places:" + rows).c_str(), askTheSame,
                                                      wire::askPlaces, buses.back().get(),
                                                      &rowsOfEach.back(), window.pid()));
  }
  for (auto* bench : registered) bench->UseRealTime()->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
