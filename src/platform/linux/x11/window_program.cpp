#include "platform/linux/x11/window_program.h"

#include <gio/gio.h>
#include <sys/utsname.h>

namespace vellora {
namespace {

std::string hostName() {
  utsname names{};
  return uname(&names) == 0 ? names.nodename : "";
}

// Texts in properties may or may not end with a zero byte.
std::string_view untilZero(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

std::string_view classPartOf(std::string_view wmClass) {
  const std::string_view instancePart = untilZero(wmClass);
  if (instancePart.size() == wmClass.size()) return {};
  return untilZero(wmClass.substr(instancePart.size() + 1));
}

}  // namespace

WindowProgramQuestion::WindowProgramQuestion(const XSession& session, xcb_window_t window)
    : process_(session.connection(), window, session.atoms().netWmPid),
      client_(session, window),
      machine_(session.connection(), window, XCB_ATOM_WM_CLIENT_MACHINE),
      gtkApplicationId_(session.connection(), window, session.atoms().gtkApplicationId),
      wmClass_(session.connection(), window, XCB_ATOM_WM_CLASS) {}

std::optional<WindowProgram> WindowProgramQuestion::take() {
  const auto processes = process_.takeNumbers();
  const auto client = client_.take();
  const auto machineName = machine_.takeBytes();
  const auto gtkId = gtkApplicationId_.takeBytes().value_or("");
  const auto classes = wmClass_.takeBytes().value_or("");
  if (!processes.empty() && processes[0] > INT32_MAX) return std::nullopt;
  const auto named = processes.empty() ? 0 : static_cast<std::int32_t>(processes[0]);
  const std::int32_t process = processHere(named, client);
  if (process == 0) return std::nullopt;
  // A process number means nothing on another host.
  if (machineName && untilZero(*machineName) != hostName() &&
      untilZero(*machineName) != "localhost") {
    return std::nullopt;
  }
  return WindowProgram{.process = process,
                       .names = {.classPart = std::string(classPartOf(classes)),
                                 .applicationId = std::string(untilZero(gtkId))},
                       .identifier = bundleIdentifierOf(gtkId, classes)};
}

bool WindowProgramQuestion::failed() const {
  return process_.failed() || machine_.failed() || gtkApplicationId_.failed() || wmClass_.failed();
}

std::optional<std::string> bundleIdentifierOf(std::string_view gtkApplicationId,
                                              std::string_view wmClass) {
  for (const std::string_view part :
       {untilZero(gtkApplicationId), classPartOf(wmClass), untilZero(wmClass)}) {
    std::string text(part);
    if (g_application_id_is_valid(text.c_str()) != FALSE) return text;
  }
  return std::nullopt;
}

}  // namespace vellora
