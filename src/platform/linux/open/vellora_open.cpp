// vellora-open [--running] URL…: hands URLs, unchanged, to the running overlay over the session
// bus, and starts an overlay first where none runs, unless told not to. Exit status 0: handed over;
// 1: could not be; 2: wrong arguments.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "base/standard_streams.h"
#include "platform/linux/glib/event_source.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/glib/session_bus.h"
#include "platform/linux/open/open_interface.h"
#include "platform/linux/open/running_mark.h"

namespace vellora {
namespace {

constexpr const char* program = "vellora";
constexpr guint startMilliseconds = 10'000;  // for a new overlay to take its name
constexpr guint lookMilliseconds = 20;
constexpr int answerMilliseconds = 5'000;

enum ExitStatus { handedOver = 0, failed = 1, wrongArguments = 2 };

constexpr const char* usage =
    "usage: vellora-open [--running] URL...\n\n"
    "Hands each URL to the running Vellora, which is started first where none runs.\n"
    "  --running  where none runs, starts none and fails\n";

int fail(ExitStatus status, const std::string& reason) {
  std::fprintf(stderr, "vellora-open: %s\n", reason.c_str());
  return status;
}

int failUsage(const std::string& reason) {
  return fail(wrongArguments, reason + " (usage: vellora-open [--running] URL...)");
}

// What became of a call to the overlay.
struct Answer {
  bool taken = false;
  bool nobodyThere = false;
  std::string reason;
};

Answer callOpen(GDBusConnection* bus, const std::vector<std::string>& urls) {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
  for (const auto& url : urls) g_variant_builder_add(&list, "s", url.c_str());
  GErrorSlot error;
  const GVariantPtr reply(g_dbus_connection_call_sync(
      bus, OpenInterface::busName, OpenInterface::objectPath, OpenInterface::interfaceName,
      OpenInterface::openMethod, g_variant_new("(as)", &list), nullptr,
      G_DBUS_CALL_FLAGS_NO_AUTO_START, answerMilliseconds, nullptr, error.out()));
  if (reply) return {.taken = true, .nobodyThere = false, .reason = {}};
  return {
      .taken = false,
      .nobodyThere = g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
                     g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN),
      .reason = error.get()->message};
}

// The overlay beside this program, as both are installed and built; else the one in PATH.
std::string overlayProgram() {
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = self.parent_path() / program;
  return !error && ::access(beside.c_str(), X_OK) == 0 ? beside.string() : std::string(program);
}

// Starts the overlay on its own: it outlives this program and the terminal, and holds none of the
// descriptors of whoever waits for this program.
bool startOverlay(std::string& reason) {
  std::string path = overlayProgram();
  char* arguments[] = {path.data(), nullptr};
  GErrorSlot error;
  const bool started = g_spawn_async(
                           nullptr, arguments, nullptr,
                           GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                       G_SPAWN_STDERR_TO_DEV_NULL),
                           [](gpointer) { ::setsid(); }, nullptr, nullptr, error.out()) != FALSE;
  if (!started) reason = error.get()->message;
  return started;
}

// Whether the overlay has taken its name before the deadline; waits no longer than `isComing`.
bool waitForOverlay(GDBusConnection* bus, const std::function<bool()>& isComing) {
  struct Wait {
    GMainLoopPtr loop{g_main_loop_new(nullptr, FALSE)};
    bool there = false;
  } wait;
  const guint watch = g_bus_watch_name_on_connection(
      bus, OpenInterface::busName, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const gchar*, const gchar*, gpointer data) {
        static_cast<Wait*>(data)->there = true;
        g_main_loop_quit(static_cast<Wait*>(data)->loop.get());
      },
      nullptr, &wait, nullptr);
  const auto deadline = attachSource(g_timeout_source_new(startMilliseconds),
                                     [&wait] { g_main_loop_quit(wait.loop.get()); });
  const auto looking = attachSource(g_timeout_source_new(lookMilliseconds), [&] {
    if (!isComing()) g_main_loop_quit(wait.loop.get());
  });
  g_main_loop_run(wait.loop.get());
  g_bus_unwatch_name(watch);
  return wait.there;
}

int open(const std::vector<std::string>& urls, bool mayStart) {
  const auto bus = connectToSessionBus();
  if (!bus)
    return fail(failed, "there is no session bus that answers, over which to reach Vellora");
  auto answer = callOpen(bus.get(), urls);
  // One that runs comes back to a bus that is new, so that another would be one too many.
  if (answer.nobodyThere && waitForOverlay(bus.get(), RunningMark::isSet)) {
    answer = callOpen(bus.get(), urls);
  }
  if (answer.nobodyThere) {
    if (RunningMark::isSet()) return fail(failed, "Vellora runs, but is not on the session bus");
    if (!mayStart) return fail(failed, "no Vellora runs");
    std::string reason;
    if (!startOverlay(reason)) return fail(failed, "Vellora cannot be started: " + reason);
    if (!waitForOverlay(bus.get(), [] { return true; })) {
      return fail(failed, "Vellora was started, but did not appear on the session bus within 10 s");
    }
    answer = callOpen(bus.get(), urls);
  }
  if (!answer.taken) return fail(failed, "Vellora did not take the URL: " + answer.reason);
  return handedOver;
}

// Whether the text begins as a URL does: with a scheme and a colon (RFC 3986, section 3.1).
bool hasScheme(const std::string& text) {
  return GCharPtr(g_uri_parse_scheme(text.c_str())) != nullptr;
}

int run(std::vector<std::string> arguments) {
  const bool mayStart = arguments.empty() || arguments[0] != "--running";
  if (!mayStart) arguments.erase(arguments.begin());
  if (arguments.empty()) return failUsage("no URL is given");
  if (arguments[0] == "--help" || arguments[0] == "-h") {
    std::fputs(usage, stdout);
    return handedOver;
  }
  for (const auto& url : arguments) {
    // A D-Bus string is UTF-8; a URL is even ASCII (RFC 3986).
    if (!g_utf8_validate(url.c_str(), -1, nullptr)) {
      return fail(wrongArguments, "a URL is not valid UTF-8");
    }
    // What a URL's scheme means, and whether it is accepted, is the overlay's affair.
    if (!hasScheme(url)) return failUsage(inQuotes(url) + " is no URL: it has no scheme");
  }
  return open(arguments, mayStart);
}

}  // namespace
}  // namespace vellora

int main(int count, char** values) {
  vellora::openMissingStandardStreams();
  return vellora::run(std::vector<std::string>(values + (count > 0 ? 1 : 0), values + count));
}
