// Watches, from outside, an overlay that follows a player: when it ticks (it reads its snapshot),
// what it asks of the player and is answered (as a monitor of the accessibility bus), and when its
// panel's pixels have changed (as a client of the X server). Prints one line an event, at the end,
// so that printing costs nothing meanwhile: microseconds since 1970, and which event.
//
//   glide_onlooker PID SNAPSHOT SECONDS
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>
#include <poll.h>
#include <sys/inotify.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace {

constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

struct Event {
  std::int64_t microseconds;
  const char* what;
};

std::vector<Event> seen;

std::int64_t now() {
  using namespace std::chrono;
  return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

void note(const char* what) { seen.push_back({now(), what}); }

int fail(const char* what) {
  std::fprintf(stderr, "glide_onlooker: %s\n", what);
  return 1;
}

// The accessibility bus's address, from the session bus.
std::string busAddress() {
  sd_bus* session = nullptr;
  sd_bus_message* reply = nullptr;
  const char* address = "";
  std::string found;
  if (sd_bus_open_user(&session) >= 0 &&
      sd_bus_call_method(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                         nullptr, &reply, nullptr) >= 0 &&
      sd_bus_message_read(reply, "s", &address) > 0) {
    found = address;
  }
  sd_bus_message_unref(reply);
  sd_bus_unref(session);
  return found;
}

sd_bus* connect(const std::string& address) {
  sd_bus* bus = nullptr;
  if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, address.c_str()) < 0 ||
      sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_set_monitor(bus, 1) < 0 ||
      sd_bus_start(bus) < 0) {
    return nullptr;
  }
  return bus;
}

bool belongsTo(sd_bus* bus, const char* name, std::uint32_t pid) {
  sd_bus_message* reply = nullptr;
  std::uint32_t found = 0;
  const bool answered =
      sd_bus_call_method(bus, driver, driverPath, driver, "GetConnectionUnixProcessID", nullptr,
                         &reply, "s", name) >= 0 &&
      sd_bus_message_read(reply, "u", &found) > 0;
  sd_bus_message_unref(reply);
  return answered && found == pid;
}

// The process's name on the bus; empty when it has none.
std::string nameOf(sd_bus* bus, std::uint32_t pid) {
  char** names = nullptr;
  std::string found;
  if (sd_bus_list_names(bus, &names, nullptr) < 0) return found;
  for (char** name = names; *name != nullptr; ++name) {
    if (**name == ':' && found.empty() && belongsTo(bus, *name, pid)) found = *name;
    std::free(*name);
  }
  std::free(names);
  return found;
}

bool becomeMonitor(sd_bus* bus, const std::string& name) {
  const std::string calls = "type='method_call',member='GetState',sender='" + name + "'";
  const std::string replies = "type='method_return',destination='" + name + "'";
  return sd_bus_call_method(bus, driver, driverPath, "org.freedesktop.DBus.Monitoring",
                            "BecomeMonitor", nullptr, nullptr, "asu", 2, calls.c_str(),
                            replies.c_str(), 0u) >= 0;
}

// A reply of two numbers in pairs, (iiii), is one to GetExtents; the call is the first of a
// reading.
void noteMessages(sd_bus* bus) {
  sd_bus_message* message = nullptr;
  while (sd_bus_process(bus, &message) > 0) {
    if (message == nullptr) continue;
    std::uint8_t type = 0;
    sd_bus_message_get_type(message, &type);
    if (type == SD_BUS_MESSAGE_METHOD_CALL) {
      note("asked");
    } else if (sd_bus_message_has_signature(message, "(iiii)") > 0) {
      note("extents");
    }
    message = sd_bus_message_unref(message);
  }
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

void noteDamage(Display* display, int firstEvent) {
  bool any = false;
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    any = any || event.type == firstEvent + XDamageNotify;
  }
  if (any) note("pixels");
}

void noteTicks(int watch) {
  alignas(inotify_event) char buffer[4096];
  ssize_t size = 0;
  while ((size = read(watch, buffer, sizeof buffer)) > 0) {
    for (char* at = buffer; at < buffer + size;) {
      const auto& event = *reinterpret_cast<const inotify_event*>(at);
      if ((event.mask & IN_OPEN) != 0 && event.len != 0 &&
          std::strcmp(event.name, "snapshot.json") == 0) {
        note("tick");
      }
      at += sizeof(inotify_event) + event.len;
    }
  }
}

template <class Number>
Number number(const char* text) {
  Number value{};
  std::from_chars(text, text + std::strlen(text), value);
  return value;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return fail("usage: glide_onlooker PID SNAPSHOT SECONDS");
  const auto pid = number<std::uint32_t>(argv[1]);
  const std::string snapshot = argv[2];
  const auto seconds = number<int>(argv[3]);

  sd_bus* const bus = connect(busAddress());
  if (bus == nullptr) return fail("no accessibility bus");
  const std::string name = nameOf(bus, pid);
  if (name.empty()) return fail("the process is not on the accessibility bus");
  if (!becomeMonitor(bus, name)) return fail("the accessibility bus lets nobody listen");

  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return fail("no display");
  int firstEvent = 0;
  int firstError = 0;
  if (XDamageQueryExtension(display, &firstEvent, &firstError) == 0) return fail("no damage");
  const auto panel = findPanel(display);
  if (!panel) return fail("no panel");
  XDamageCreate(display, *panel, XDamageReportRawRectangles);
  XFlush(display);

  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  const std::string folder = snapshot.substr(0, snapshot.rfind('/'));
  if (inotify_add_watch(watch, folder.c_str(), IN_OPEN) < 0) return fail("cannot watch the folder");

  const std::int64_t end = now() + std::int64_t{seconds} * 1'000'000;
  for (std::int64_t left = end - now(); left > 0; left = end - now()) {
    pollfd ready[] = {{sd_bus_get_fd(bus), POLLIN, 0},
                      {XConnectionNumber(display), POLLIN, 0},
                      {watch, POLLIN, 0}};
    poll(ready, 3, static_cast<int>(left / 1000) + 1);
    if (ready[1].revents != 0) noteDamage(display, firstEvent);
    if (ready[0].revents != 0) noteMessages(bus);
    if (ready[2].revents != 0) noteTicks(watch);
  }
  for (const Event& event : seen) {
    std::printf("%lld %s\n", static_cast<long long>(event.microseconds), event.what);
  }
  return 0;
}
