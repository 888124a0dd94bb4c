// Starts a program and tells, from outside, how long after that its window was mapped and when the
// first picture was in it: two pixels that differ. Prints both in milliseconds, and ends the
// program. Which window it is, is known by its class.
//
//   start_onlooker CLASS COMMAND [ARGUMENT...]
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto patience = std::chrono::seconds(15);

double milliseconds(Clock::duration span) {
  return std::chrono::duration<double, std::milli>(span).count();
}

// Windows go while they are asked about.
int passOver(Display*, XErrorEvent*) { return 0; }

bool hasClass(Display* display, Window window, const char* wanted) {
  XClassHint hint{};
  if (XGetClassHint(display, window, &hint) == 0) return false;
  const bool isSame = hint.res_class != nullptr && strcasecmp(hint.res_class, wanted) == 0;
  XFree(hint.res_name);
  XFree(hint.res_class);
  return isSame;
}

bool showsSomething(Display* display, Window window) {
  XWindowAttributes attributes{};
  if (XGetWindowAttributes(display, window, &attributes) == 0) return false;
  XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(attributes.width),
                            static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
  if (image == nullptr) return false;
  const auto bytes =
      static_cast<std::size_t>(image->bytes_per_line) * static_cast<std::size_t>(image->height);
  // Every pixel of four bytes is the first one's.
  const bool isPlain = bytes < 8 || std::memcmp(image->data, image->data + 4, bytes - 4) == 0;
  XDestroyImage(image);
  return !isPlain;
}

pid_t start(char** command) {
  const pid_t child = fork();
  if (child != 0) return child;
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {0, 1, 2}) dup2(nowhere, stream);
  execvp(command[0], command);
  _exit(127);
}

struct Times {
  std::optional<double> mapped;
  std::optional<double> drawn;
};

class Onlooker {
 public:
  explicit Onlooker(Display* display) : display_(display) {
    int event = 0;
    int error = 0;
    XDamageQueryExtension(display, &event, &error);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
  }

  Times watch(const char* windowClass, Clock::time_point began) {
    Times times;
    while (!times.drawn && Clock::now() - began < patience) {
      pollfd connection{ConnectionNumber(display_), POLLIN, 0};
      if (XPending(display_) == 0) poll(&connection, 1, 100);
      const auto now = Clock::now();
      while (XPending(display_) > 0) {
        XEvent event;
        XNextEvent(display_, &event);
        if (event.type == MapNotify && hasClass(display_, event.xmap.window, windowClass)) {
          if (!times.mapped) times.mapped = milliseconds(now - began);
          window_ = event.xmap.window;
          XDamageCreate(display_, window_, XDamageReportRawRectangles);
        }
      }
      if (window_ != None && showsSomething(display_, window_)) {
        times.drawn = milliseconds(now - began);
      }
    }
    return times;
  }

 private:
  Display* display_;
  Window window_ = None;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: start_onlooker CLASS COMMAND [ARGUMENT...]\n", stderr);
    return 2;
  }
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    std::fputs("start_onlooker: no display\n", stderr);
    return 1;
  }
  XSetErrorHandler(passOver);
  Onlooker onlooker(display);
  const auto began = Clock::now();
  const pid_t child = start(argv + 2);
  const Times times = onlooker.watch(argv[1], began);
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
  if (!times.mapped || !times.drawn) {
    std::fprintf(stderr, "start_onlooker: %s\n",
                 times.mapped ? "nothing was drawn" : "no window was mapped");
    return 1;
  }
  std::printf("%.1f %.1f\n", *times.mapped, *times.drawn);
  return 0;
}
