#include "platform/linux/x11/x_workspace.h"

#include <algorithm>
#include <set>
#include <utility>

#include <gio/gio.h>
#include <sys/utsname.h>

#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/x_property.h"

namespace vellora {
namespace {

class XApplication final : public RunningApplication {
 public:
  XApplication(std::int32_t process, std::optional<std::string> identifier)
      : process_(process), identifier_(std::move(identifier)) {}

  std::optional<std::string> bundleIdentifier() const override { return identifier_; }
  std::int32_t processIdentifier() const override { return process_; }

 private:
  std::int32_t process_;
  std::optional<std::string> identifier_;
};

std::string hostName() {
  utsname names{};
  return uname(&names) == 0 ? names.nodename : "";
}

// Texts in properties may or may not end with a zero byte.
std::string_view untilZero(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

// What a window says of its program, asked but not yet taken.
struct WindowQuestions {
  WindowQuestions(const XSession& session, xcb_window_t window)
      : process(session.connection(), window, session.atoms().netWmPid),
        machine(session.connection(), window, XCB_ATOM_WM_CLIENT_MACHINE),
        gtkApplicationId(session.connection(), window, session.atoms().gtkApplicationId),
        wmClass(session.connection(), window, XCB_ATOM_WM_CLASS) {}

  std::shared_ptr<const RunningApplication> take() {
    const auto processes = process.takeNumbers();
    const auto machineName = machine.takeBytes();
    const auto gtkId = gtkApplicationId.takeBytes();
    const auto classes = wmClass.takeBytes();
    if (processes.empty() || processes[0] == 0 || processes[0] > INT32_MAX) return nullptr;
    // A process number means nothing on another host.
    if (machineName && untilZero(*machineName) != hostName() &&
        untilZero(*machineName) != "localhost") {
      return nullptr;
    }
    return std::make_shared<XApplication>(
        static_cast<std::int32_t>(processes[0]),
        bundleIdentifierOf(gtkId.value_or(""), classes.value_or("")));
  }

  PropertyQuestion process;
  PropertyQuestion machine;
  PropertyQuestion gtkApplicationId;
  PropertyQuestion wmClass;
};

// Whether nothing of a window but its title bar can be seen, going by its _NET_WM_STATE.
bool isMinimised(const std::vector<std::uint32_t>& states, const XAtoms& atoms) {
  return std::ranges::any_of(states, [&atoms](std::uint32_t state) {
    return state == atoms.netWmStateHidden || state == atoms.netWmStateShaded;
  });
}

}  // namespace

std::optional<std::string> bundleIdentifierOf(std::string_view gtkApplicationId,
                                              std::string_view wmClass) {
  const std::string_view instancePart = untilZero(wmClass);
  const std::string_view classPart = instancePart.size() < wmClass.size()
                                         ? untilZero(wmClass.substr(instancePart.size() + 1))
                                         : std::string_view();
  for (const std::string_view part : {untilZero(gtkApplicationId), classPart, instancePart}) {
    std::string text(part);
    if (g_application_id_is_valid(text.c_str()) != FALSE) return text;
  }
  return std::nullopt;
}

XWorkspace::XWorkspace(std::shared_ptr<XSession> session) : session_(std::move(session)) {
  session_->addListener(*this);
}

XWorkspace::~XWorkspace() { session_->removeListener(*this); }

std::shared_ptr<const RunningApplication> XWorkspace::frontmostApplication() {
  session_->dispatch();
  if (!session_->present()) return nullptr;
  if (!frontmostKnown_) readFrontmost();
  return frontmost_;
}

void XWorkspace::readFrontmost() {
  frontmostKnown_ = true;
  xcb_connection_t* const c = session_->connection();
  const auto active =
      PropertyQuestion(c, session_->root(), session_->atoms().netActiveWindow).takeNumbers();
  constexpr xcb_window_t none = XCB_WINDOW_NONE;
  const xcb_window_t window = active.empty() ? none : active[0];
  if (window != activeWindow_ && activeWindow_ != XCB_WINDOW_NONE) {
    const std::uint32_t noEvents = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(c, activeWindow_, XCB_CW_EVENT_MASK, &noEvents);
  }
  activeWindow_ = window;
  frontmost_.reset();
  if (window == XCB_WINDOW_NONE || window == session_->root()) return;
  // Before the questions, so that no change falls between them and the first notice.
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &events);
  PropertyQuestion states(c, window, session_->atoms().netWmState);
  WindowQuestions questions(*session_, window);
  const bool isSeen = !isMinimised(states.takeNumbers(), session_->atoms());
  auto program = questions.take();
  if (isSeen) frontmost_ = std::move(program);
}

std::vector<std::shared_ptr<const RunningApplication>> XWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  session_->dispatch();
  std::vector<std::shared_ptr<const RunningApplication>> found;
  if (!session_->present()) return found;
  constexpr std::uint32_t listBytes = 65536;
  const auto windows = PropertyQuestion(session_->connection(), session_->root(),
                                        session_->atoms().netClientList, listBytes)
                           .takeNumbers();
  std::vector<WindowQuestions> questions;
  questions.reserve(windows.size());
  for (const xcb_window_t window : windows) questions.emplace_back(*session_, window);
  std::set<std::int32_t> seen;
  for (WindowQuestions& question : questions) {
    auto application = question.take();
    if (!application || application->bundleIdentifier() != bundleIdentifier) continue;
    if (seen.insert(application->processIdentifier()).second) {
      found.push_back(std::move(application));
    }
  }
  return found;
}

std::optional<double> XWorkspace::primaryScreenHeight() {
  session_->dispatch();
  return session_->metrics().primaryHeight();
}

std::optional<double> XWorkspace::mainScreenScale() {
  session_->dispatch();
  return session_->metrics().scale();
}

void XWorkspace::handleEvent(const xcb_generic_event_t& event) {
  // Some window managers leave the last window's number behind when its program dies.
  if (eventType(event) == XCB_DESTROY_NOTIFY &&
      eventAs<xcb_destroy_notify_event_t>(event).window == activeWindow_) {
    frontmostKnown_ = false;
    return;
  }
  if (eventType(event) != XCB_PROPERTY_NOTIFY) return;
  const auto& notice = eventAs<xcb_property_notify_event_t>(event);
  const XAtoms& atoms = session_->atoms();
  if (notice.window == session_->root()) {
    if (notice.atom == atoms.netActiveWindow) frontmostKnown_ = false;
  } else if (notice.window == activeWindow_) {
    if (notice.atom == atoms.netWmPid || notice.atom == atoms.gtkApplicationId ||
        notice.atom == XCB_ATOM_WM_CLASS || notice.atom == XCB_ATOM_WM_CLIENT_MACHINE ||
        notice.atom == atoms.netWmState) {
      frontmostKnown_ = false;
    }
  }
}

void XWorkspace::sessionLost() {
  frontmost_.reset();
  activeWindow_ = XCB_WINDOW_NONE;
  frontmostKnown_ = false;
}

}  // namespace vellora
