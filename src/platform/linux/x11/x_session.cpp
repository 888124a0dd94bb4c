#include "platform/linux/x11/x_session.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include "platform/linux/x11/display_probe.h"
#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/x_event_source.h"

namespace vellora {
namespace {

constexpr std::chrono::milliseconds connectPatience{2000};

// libxcb writes to a socket whose other end may be gone; the program is to outlive that.
void ignoreBrokenPipes() {
  struct sigaction current {};
  if (sigaction(SIGPIPE, nullptr, &current) != 0 || current.sa_handler != SIG_DFL) return;
  current.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &current, nullptr);
}

const xcb_screen_t* screenAt(xcb_connection_t* connection, int number) {
  xcb_screen_iterator_t each = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && each.rem > 1; --number) xcb_screen_next(&each);
  return each.rem > 0 ? each.data : nullptr;
}

}  // namespace

XSession::XSession(const char* displayName) {
  present_ = connect(displayName);
  metrics_ = std::make_unique<ScreenMetrics>(*this, std::getenv("GDK_SCALE"));
  if (present_) source_ = std::make_unique<XEventSource>(*this);
}

XSession::~XSession() {
  source_.reset();
  metrics_.reset();
}

bool XSession::connect(const char* displayName) {
  if (!displayAnswers(displayName, connectPatience)) return false;
  ignoreBrokenPipes();
  int screenNumber = 0;
  connection_.reset(xcb_connect(displayName, &screenNumber));
  if (xcb_connection_has_error(connection_.get()) != 0) return false;
  screen_ = screenAt(connection_.get(), screenNumber);
  if (screen_ == nullptr) return false;
  learnExtensions();
  atoms_ = internAtoms(connection_.get(), screenNumber);
  present_ = true;
  watchTopLevels(false);
  return xcb_connection_has_error(connection_.get()) == 0;
}

void XSession::learnExtensions() {
  xcb_connection_t* const c = connection_.get();
  xcb_prefetch_extension_data(c, &xcb_xfixes_id);
  xcb_prefetch_extension_data(c, &xcb_randr_id);
  xcb_prefetch_extension_data(c, &xcb_shape_id);
  xcb_prefetch_extension_data(c, &xcb_res_id);
  const auto* const fixes = xcb_get_extension_data(c, &xcb_xfixes_id);
  const auto* const randr = xcb_get_extension_data(c, &xcb_randr_id);
  const auto* const shape = xcb_get_extension_data(c, &xcb_shape_id);
  hasShape_ = shape != nullptr && shape->present != 0;
  const auto* const resources = xcb_get_extension_data(c, &xcb_res_id);
  if (resources != nullptr && resources->present != 0) {
    const XcbReply<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(c, xcb_res_query_version(c, 1, 2), nullptr));
    tellsProcesses_ = version && std::pair(version->server_major, version->server_minor) >=
                                     std::pair<std::uint16_t, std::uint16_t>(1, 2);
  }
  // Both want to be told the version before anything else is asked of them.
  if (fixes != nullptr && fixes->present != 0) {
    const XcbReply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 2, 0), nullptr));
    if (version && version->major_version >= 2) fixesFirstEvent_ = fixes->first_event;
  }
  if (randr != nullptr && randr->present != 0) {
    const XcbReply<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(c, xcb_randr_query_version(c, 1, 5), nullptr));
    if (version && std::pair(version->major_version, version->minor_version) >=
                       std::pair<std::uint32_t, std::uint32_t>(1, 5)) {
      randrFirstEvent_ = randr->first_event;
    }
  }
}

void XSession::addListener(XEventListener& listener) { listeners_.push_back(&listener); }

void XSession::removeListener(XEventListener& listener) {
  std::ranges::replace(listeners_, &listener, static_cast<XEventListener*>(nullptr));
  if (!dispatching_) std::erase(listeners_, nullptr);
}

void XSession::keepDrawingDevice(cairo_device_t* device) {
  if (device != drawingDevice_.get()) drawingDevice_.reset(cairo_device_reference(device));
}

void XSession::watchTopLevels(bool watch) {
  if (!present_) return;
  std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  if (watch) events |= XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), root(), XCB_CW_EVENT_MASK, &events);
}

XcbEvent XSession::nextEvent() {
  if (queued_) return std::move(queued_);
  return XcbEvent(xcb_poll_for_event(connection_.get()));
}

void XSession::dispatch() {
  if (!present_ || dispatching_) return;
  dispatching_ = true;
  xcb_flush(connection_.get());
  bool any = false;
  // By index: a listener may add another, which then hears the rest of the turn.
  while (const XcbEvent event = nextEvent()) {
    any = true;
    if (eventType(*event) == 0) continue;  // an error
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
      if (listeners_[i] != nullptr) listeners_[i]->handleEvent(*event);
    }
  }
  for (std::size_t i = 0; any && i < listeners_.size(); ++i) {
    if (listeners_[i] != nullptr) listeners_[i]->endTurn();
  }
  if (xcb_connection_has_error(connection_.get()) != 0) lose();
  for (std::size_t i = 0; present_ && i < listeners_.size(); ++i) {
    if (listeners_[i] != nullptr) listeners_[i]->lookForAnswers();
  }
  dispatching_ = false;
  std::erase(listeners_, nullptr);
}

bool XSession::prepareToWait() {
  if (!present_) return false;
  xcb_flush(connection_.get());
  if (!queued_) queued_.reset(xcb_poll_for_queued_event(connection_.get()));
  return queued_ != nullptr || xcb_connection_has_error(connection_.get()) != 0;
}

int XSession::fd() const { return xcb_get_file_descriptor(connection_.get()); }

// The connection itself is kept: others may still hold on to what they made with it.
void XSession::lose() {
  present_ = false;
  queued_.reset();
  source_.reset();
  for (std::size_t i = 0; i < listeners_.size(); ++i) {
    if (listeners_[i] != nullptr) listeners_[i]->sessionLost();
  }
}

}  // namespace vellora
