// The overlay's calls of the X server and of the buses, of which one is to fail: loaded into the
// program before the libraries that they belong to (LD_PRELOAD). Only calls from the program itself
// are counted, not those that libraries make among each other.
//
//   VELLORA_FAULT_CALL  the number of the call that fails, from 1; none: all are carried out
//   VELLORA_FAULT_SITE  where given, only calls from this place of the program are counted
//   VELLORA_FAULT_LOG   a file that gets a line for each call that is counted: place and function;
//                       the one that fails is followed by "failed"
//
// Each call is handed on with as many words as the longest has arguments; what is too much is not
// looked at. That holds for the calling conventions of Linux on x86-64 and 64-bit Arm, where
// integers and pointers travel in registers and then in words of the stack.

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

namespace {

using Word = std::intptr_t;
using Call = Word(Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word,
                  Word);

template <typename Function = Call>
Function* real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

// Where the program itself lies; libraries come after it.
const ElfW(Addr) & programBase() {
  static const ElfW(Addr) base = [] {
    ElfW(Addr) found = 0;
    ::dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* result) {
          *static_cast<ElfW(Addr)*>(result) = info->dlpi_addr;
          return 1;
        },
        &found);
    return found;
  }();
  return base;
}

bool isOfTheProgram(const void* caller) {
  Dl_info info{};
  return ::dladdr(caller, &info) != 0 &&
         reinterpret_cast<ElfW(Addr)>(info.dli_fbase) == programBase();
}

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Counts the call, and says whether it fails.
bool fails(const char* function, const void* caller) {
  static const long chosen = std::atol(variable("VELLORA_FAULT_CALL").c_str());
  static const std::string site = variable("VELLORA_FAULT_SITE");
  static const int log = ::open(variable("VELLORA_FAULT_LOG").c_str(),
                                O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  static std::atomic<long> calls{0};
  if (!isOfTheProgram(caller)) return false;
  char place[32];
  std::snprintf(place, sizeof place, "%lx",
                static_cast<unsigned long>(reinterpret_cast<ElfW(Addr)>(caller) - programBase()));
  if (!site.empty() && site != place) return false;
  const bool chosenOne = ++calls == chosen;
  const std::string line = std::string(place) + " " + function + (chosenOne ? " failed\n" : "\n");
  if (log >= 0 && ::write(log, line.data(), line.size()) < 0) ::_exit(99);
  return chosenOne;
}

// Makes a GError where the caller wants one, and gives the result of a call that failed.
Word glibError(Word place) {
  if (place == 0) return 0;
  const auto quark = real<unsigned()>("g_io_error_quark")();
  *reinterpret_cast<Word*>(place) = real<Word(unsigned, int, const char*)>("g_error_new_literal")(
      quark, 0, "this call was to fail");
  return 0;
}

// An answer that came is lost, as is the error that came in its place.
Word lost(Word answer, Word error) {
  std::free(reinterpret_cast<void*>(answer));
  if (error != 0) {
    std::free(std::exchange(*reinterpret_cast<void**>(error), nullptr));
  }
  return 0;
}

// The server refuses what goes out in the place of a request, or of a question: window 0.
Word refusedRequest(Word connection, const char* request = "xcb_unmap_window") {
  return real<Word(Word, Word)>(request)(connection, 0);
}
Word refusedQuestion(Word connection) {
  return real<Word(Word, Word)>("xcb_get_geometry")(connection, 0);
}

// An error, as libxcb hands it out: to be freed.
Word refusal() { return reinterpret_cast<Word>(std::calloc(1, 64)); }

// The answer that is looked for has come, and is none.
Word noAnswer(Word connection, Word sequence, Word answer, Word error) {
  real<void(Word, Word)>("xcb_discard_reply")(connection, sequence);
  *reinterpret_cast<Word*>(answer) = 0;
  if (error != 0) *reinterpret_cast<Word*>(error) = 0;
  return 1;
}

const Word nobody = reinterpret_cast<Word>("org.vellora.Nobody");
const Word theBus = reinterpret_cast<Word>("org.freedesktop.DBus");

}  // namespace

#define PARAMETERS                                                               \
  [[maybe_unused]] Word a, [[maybe_unused]] Word b, [[maybe_unused]] Word c,     \
      [[maybe_unused]] Word d, [[maybe_unused]] Word e, [[maybe_unused]] Word f, \
      [[maybe_unused]] Word g, [[maybe_unused]] Word h, [[maybe_unused]] Word i, \
      [[maybe_unused]] Word j, [[maybe_unused]] Word k, [[maybe_unused]] Word l, \
      [[maybe_unused]] Word m, [[maybe_unused]] Word n
#define WORDS a, b, c, d, e, f, g, h, i, j, k, l, m, n

// A call that does `otherwise` in the place of its work when it fails.
#define CALL(name, otherwise)                                           \
  extern "C" Word name(PARAMETERS) {                                    \
    static auto* const call = real(#name);                              \
    if (!fails(#name, __builtin_return_address(0))) return call(WORDS); \
    return otherwise;                                                   \
  }
#define REQUEST(name) CALL(name, refusedRequest(a))
#define REQUEST_CHECKED(name) CALL(name, refusedRequest(a, "xcb_unmap_window_checked"))
#define QUESTION(name)           \
  CALL(name, refusedQuestion(a)) \
  CALL(name##_reply, lost(call(WORDS), c))

// The connection to the X server.
CALL(xcb_connect, real<Word(const char*, Word)>("xcb_connect")("nowhere", b))
CALL(xcb_connection_has_error, 1)
CALL(xcb_flush, 0)
CALL(xcb_generate_id, -1)
CALL(xcb_get_extension_data, 0)
CALL(xcb_parse_display, 0)
CALL(xcb_request_check, refusal())
CALL(xcb_poll_for_event, 0)
CALL(xcb_poll_for_queued_event, 0)
CALL(xcb_poll_for_reply, noAnswer(a, b, c, d))

// What is asked of it.
REQUEST(xcb_change_property)
REQUEST(xcb_change_window_attributes)
REQUEST(xcb_configure_window)
REQUEST(xcb_create_colormap)
REQUEST_CHECKED(xcb_create_window_checked)
REQUEST(xcb_destroy_window)
REQUEST(xcb_free_colormap)
REQUEST_CHECKED(xcb_map_window_checked)
REQUEST(xcb_randr_select_input)
REQUEST(xcb_shape_rectangles)
REQUEST(xcb_unmap_window)
REQUEST(xcb_xfixes_select_selection_input)
QUESTION(xcb_get_geometry)
QUESTION(xcb_get_property)
QUESTION(xcb_get_selection_owner)
QUESTION(xcb_intern_atom)
QUESTION(xcb_query_tree)
QUESTION(xcb_randr_get_monitors)
QUESTION(xcb_randr_query_version)
QUESTION(xcb_res_query_client_ids)
QUESTION(xcb_res_query_version)
QUESTION(xcb_shape_get_rectangles)
QUESTION(xcb_shape_query_extents)
QUESTION(xcb_xfixes_query_version)

// The session bus, over GDBus. What is sent to a name that nobody has fails later; a name that the
// bus keeps for itself is nobody else's.
CALL(g_bus_get_sync, glibError(c))
CALL(g_bus_own_name_on_connection, call(a, theBus, c, d, e, f, g, h, i, j, k, l, m, n))
CALL(g_bus_watch_name_on_connection, call(a, nobody, c, d, e, f, g, h, i, j, k, l, m, n))
CALL(g_dbus_connection_call, call(a, nobody, c, d, e, f, g, h, i, j, k, l, m, n))
CALL(g_dbus_connection_call_finish, (call(WORDS), glibError(c)))
CALL(g_dbus_connection_call_sync, glibError(k))
CALL(g_dbus_connection_emit_signal, glibError(g))
CALL(g_dbus_connection_register_object, glibError(g))

// The accessibility bus, over sd-bus.
CALL(sd_bus_add_match_async, -EIO)
CALL(sd_bus_call_async, -EIO)
CALL(sd_bus_get_events, -EIO)
CALL(sd_bus_get_fd, -EIO)
CALL(sd_bus_get_timeout, -EIO)
CALL(sd_bus_message_append, -EIO)
CALL(sd_bus_message_enter_container, -EIO)
CALL(sd_bus_message_exit_container, -EIO)
CALL(sd_bus_message_get_destination, 0)
CALL(sd_bus_message_get_member, 0)
CALL(sd_bus_message_get_path, 0)
CALL(sd_bus_message_get_sender, 0)
CALL(sd_bus_message_new_method_call, -EIO)
CALL(sd_bus_message_peek_type, -EIO)
CALL(sd_bus_message_read, -EIO)
CALL(sd_bus_message_read_array, -EIO)
CALL(sd_bus_message_set_auto_start, -EIO)
CALL(sd_bus_message_skip, -EIO)
CALL(sd_bus_negotiate_fds, -EIO)
CALL(sd_bus_new, -EIO)
CALL(sd_bus_open_user, -EIO)
CALL(sd_bus_process, -EIO)
CALL(sd_bus_set_address, -EIO)
CALL(sd_bus_set_bus_client, -EIO)
CALL(sd_bus_set_fd, -EIO)
CALL(sd_bus_start, -EIO)
