// Watches, from outside, an overlay that follows a player: when it ticks (it reads its snapshot),
// what it asks of the player and is answered (as a monitor of the accessibility bus), and when its
// panel's pixels have changed (as a client of the X server; on Wayland, when it has committed the
// panel's surface, by what its libwayland writes down). Prints one line an event, at the end, so
// that printing costs nothing meanwhile: microseconds since 1970, and which event.
//
//   glide_onlooker PID SNAPSHOT SECONDS [WAYLAND_LOG]
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>

#include "support/reading_onlooker.h"

namespace {

using vellora::ReadingOnlooker;

int fail(const char* what) {
  std::fprintf(stderr, "glide_onlooker: %s\n", what);
  return 1;
}

std::optional<Window> findPanel(Display* display) {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  std::optional<Window> found;
  XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
  for (unsigned i = 0; i < count; ++i) {
    XClassHint hint{};
    if (XGetClassHint(display, children[i], &hint) == 0) continue;
    if (std::string_view(hint.res_class) == "Vellora") found = children[i];
    XFree(hint.res_name);
    XFree(hint.res_class);
  }
  if (children != nullptr) XFree(children);
  return found;
}

bool takeDamage(Display* display, int firstEvent) {
  bool any = false;
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    any = any || event.type == firstEvent + XDamageNotify;
  }
  return any;
}

template <class Number>
Number number(const char* text) {
  Number value{};
  std::from_chars(text, text + std::strlen(text), value);
  return value;
}

// When the panel's pixels changed.
using Times = std::vector<std::int64_t>;

std::optional<Times> watchX(ReadingOnlooker& onlooker, int milliseconds) {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return fail("no display"), std::nullopt;
  int firstEvent = 0;
  int firstError = 0;
  if (XDamageQueryExtension(display, &firstEvent, &firstError) == 0) {
    return fail("no damage"), std::nullopt;
  }
  const auto panel = findPanel(display);
  if (!panel) return fail("no panel"), std::nullopt;
  XDamageCreate(display, *panel, XDamageReportRawRectangles);
  XFlush(display);
  Times pixels;
  onlooker.look(milliseconds, XConnectionNumber(display), [&] {
    if (takeDamage(display, firstEvent)) pixels.push_back(ReadingOnlooker::now());
  });
  return pixels;
}

const char* wordFor(ReadingOnlooker::What what) {
  switch (what) {
    case ReadingOnlooker::What::tick:
      return "tick";
    case ReadingOnlooker::What::asked:
      return "asked";
    case ReadingOnlooker::What::place:
      return "extents";
    case ReadingOnlooker::What::moved:
      return "moved";
  }
  return "";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4 || argc > 5) {
    return fail("usage: glide_onlooker PID SNAPSHOT SECONDS [WAYLAND_LOG]");
  }
  std::string problem;
  const auto onlooker = ReadingOnlooker::watch(number<pid_t>(argv[1]), argv[2], problem);
  if (!onlooker) return fail(problem.c_str());
  const int milliseconds = number<int>(argv[3]) * 1000;
  std::optional<Times> pixels;
  if (argc == 5) {
    const std::int64_t begin = ReadingOnlooker::now();
    onlooker->look(milliseconds);
    pixels = vellora::commitsIn(argv[4]);
    std::erase_if(*pixels, [begin](std::int64_t time) { return time < begin; });
  } else {
    pixels = watchX(*onlooker, milliseconds);
  }
  if (!pixels) return 1;
  std::vector<std::pair<std::int64_t, const char*>> lines;
  for (const auto& event : onlooker->seen()) {
    lines.emplace_back(event.microseconds, wordFor(event.what));
  }
  for (const std::int64_t time : *pixels) lines.emplace_back(time, "pixels");
  std::ranges::stable_sort(lines, {}, [](const auto& one) { return one.first; });
  for (const auto& [time, what] : lines) {
    std::printf("%lld %s\n", static_cast<long long>(time), what);
  }
  return 0;
}
