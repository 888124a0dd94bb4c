#include "platform/linux/x11/x_workspace.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/linux/window_system/window_owner.h"
#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/x_property.h"
#include "platform/player.h"

namespace vellora {
namespace {

constexpr std::uint32_t listBytes = 65536;

// Whether nothing of a window but its title bar can be seen, going by its _NET_WM_STATE.
bool isMinimised(const std::vector<std::uint32_t>& states, const XAtoms& atoms) {
  return std::ranges::any_of(states, [&atoms](std::uint32_t state) {
    return state == atoms.netWmStateHidden || state == atoms.netWmStateShaded;
  });
}

}  // namespace

XWorkspace::XWorkspace(std::shared_ptr<XSession> session,
                       std::vector<PlayerDescriptionPtr> descriptions,
                       std::shared_ptr<PlayerWindows> windows)
    : session_(std::move(session)),
      descriptions_(std::move(descriptions)),
      windows_(windows ? std::move(windows) : std::make_shared<PlayerWindows>()),
      listing_(*session_, descriptions_, *windows_),
      area_(*session_) {
  session_->addListener(*this);
  if (session_->present()) lookForAnswers();
}

XWorkspace::~XWorkspace() { session_->removeListener(*this); }

std::shared_ptr<const RunningApplication> XWorkspace::frontmostApplication() {
  session_->dispatch();
  if (!session_->present()) return nullptr;
  if (!frontmostKnown_) readFrontmost();
  if (frontPlayer_) placeFrontPlayer();
  return frontmost_;
}

// Who looks for players' windows need not be who asks which is in front.
void XWorkspace::lookForAnswers() {
  if (descriptions_.empty()) return;
  if (!frontmostKnown_) readFrontmost();
  listing_.advance(frontPlayer_ ? std::optional(frontPlayer_->process) : std::nullopt);
}

void XWorkspace::readFrontmost() {
  frontmostKnown_ = true;
  xcb_connection_t* const c = session_->connection();
  PropertyQuestion activeQuestion(c, session_->root(), session_->atoms().netActiveWindow);
  const auto active = activeQuestion.takeNumbers();
  constexpr xcb_window_t none = XCB_WINDOW_NONE;
  const xcb_window_t window = active.empty() ? none : active[0];
  if (window != activeWindow_) {
    area_.follow(XCB_WINDOW_NONE);
    const std::uint32_t noEvents = XCB_EVENT_MASK_NO_EVENT;
    if (activeWindow_ != XCB_WINDOW_NONE) {
      xcb_change_window_attributes(c, activeWindow_, XCB_CW_EVENT_MASK, &noEvents);
    }
  }
  activeWindow_ = window;
  frontmost_.reset();
  frontPlayer_.reset();
  // What the server did not tell is asked again at the next look.
  if (activeQuestion.failed()) frontmostKnown_ = false;
  if (window == XCB_WINDOW_NONE || window == session_->root()) return;
  // Before the questions, so that no change falls between them and the first notice.
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &events);
  PropertyQuestion states(c, window, session_->atoms().netWmState);
  WindowProgramQuestion question(*session_, window);
  const bool isSeen = !isMinimised(states.takeNumbers(), session_->atoms());
  const auto program = question.take();
  if (states.failed() || question.failed()) frontmostKnown_ = false;
  if (program && isSeen) setFrontmost(*program);
}

void XWorkspace::setFrontmost(const WindowProgram& program) {
  auto descriptions = descriptionsFor(program.names, descriptions_);
  if (descriptions.empty()) {
    frontmost_ = std::make_shared<WindowOwner>(program.process, program.identifier);
    return;
  }
  frontmost_ = std::make_shared<WindowOwner>(program.process, std::string(musicPlayer.identifier));
  area_.follow(activeWindow_);
  frontPlayer_ = {.process = program.process,
                  .descriptions = std::move(descriptions),
                  .clientArea = area_.read(),
                  .scale = session_->metrics().scale().value_or(1)};
  windows_->bringToFront(*frontPlayer_);
}

void XWorkspace::placeFrontPlayer() {
  const auto area = area_.read();
  const double scale = session_->metrics().scale().value_or(1);
  if (area == frontPlayer_->clientArea && scale == frontPlayer_->scale) return;
  frontPlayer_->clientArea = area;
  frontPlayer_->scale = scale;
  windows_->bringToFront(*frontPlayer_);
}

std::vector<std::shared_ptr<const RunningApplication>> XWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  session_->dispatch();
  std::vector<std::shared_ptr<const RunningApplication>> found;
  if (!session_->present()) return found;
  std::vector<std::pair<WindowProgramQuestion, ClientAreaQuestion>> questions;
  for (const xcb_window_t window : listWindows()) {
    questions.emplace_back(WindowProgramQuestion(*session_, window),
                           ClientAreaQuestion(*session_, window));
  }
  std::set<std::int32_t> seen;
  for (auto& [program, area] : questions) {
    const auto taken = program.take();
    const auto place = area.take();
    if (!taken) continue;
    auto descriptions = descriptionsFor(taken->names, descriptions_);
    auto identifier = descriptions.empty() ? taken->identifier
                                           : std::optional(std::string(musicPlayer.identifier));
    if (identifier != bundleIdentifier || !seen.insert(taken->process).second) continue;
    found.push_back(std::make_shared<WindowOwner>(taken->process, std::move(identifier)));
    if (descriptions.empty()) continue;
    windows_->note({.process = taken->process,
                    .descriptions = std::move(descriptions),
                    .clientArea = place,
                    .scale = session_->metrics().scale().value_or(1)});
  }
  return found;
}

std::vector<xcb_window_t> XWorkspace::listWindows() {
  xcb_connection_t* const c = session_->connection();
  const XAtoms& atoms = session_->atoms();
  PropertyQuestion list(c, session_->root(), atoms.netClientList, listBytes);
  PropertyQuestion stacking(c, session_->root(), atoms.netClientListStacking, listBytes);
  PropertyQuestion active(c, session_->root(), atoms.netActiveWindow);
  auto windows = list.takeNumbers();
  if (const auto lowestFirst = stacking.takeNumbers(); !lowestFirst.empty()) {
    windows.assign(lowestFirst.rbegin(), lowestFirst.rend());
  }
  const auto actives = active.takeNumbers();
  std::ranges::stable_partition(
      windows, [&](xcb_window_t window) { return !actives.empty() && window == actives[0]; });
  return windows;
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
  area_.handleEvent(event);
  listing_.handleEvent(event);
  // Some window managers leave the last window's number behind when its program dies.
  if (eventType(event) == XCB_DESTROY_NOTIFY &&
      eventAs<xcb_destroy_notify_event_t>(event).window == activeWindow_) {
    area_.follow(XCB_WINDOW_NONE);
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
  frontPlayer_.reset();
  area_.forget();
  listing_.forget();
  activeWindow_ = XCB_WINDOW_NONE;
  frontmostKnown_ = false;
}

}  // namespace vellora
