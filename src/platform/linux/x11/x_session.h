#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <cairo.h>
#include <xcb/xcb.h>

#include "platform/linux/x11/x_atoms.h"
#include "platform/linux/x11/xcb_types.h"

namespace vellora {

class ScreenMetrics;
class XEventSource;

struct CairoDeviceFinish {
  void operator()(cairo_device_t* device) const {
    cairo_device_finish(device);
    cairo_device_destroy(device);
  }
};
using CairoDevicePtr = std::unique_ptr<cairo_device_t, CairoDeviceFinish>;

// Hears what the server sends. Main thread.
class XEventListener {
 public:
  virtual ~XEventListener() = default;

  virtual void handleEvent(const xcb_generic_event_t& event) = 0;
  // After the events that were there have been handed out.
  virtual void endTurn() {}
  // After that, and also when there were none: answers to questions may have come.
  virtual void lookForAnswers() {}
  // The connection is gone for good; every window and other resource went with it.
  virtual void sessionLost() {}
};

// The connection to the X server, which may be absent from the start or be lost: then nothing of it
// works, and nothing of it fails loudly. The server's errors are ignored, as they only say that a
// window of somebody else's is gone. Listens on GLib's default main context; needs no running loop,
// for whoever asks something of the desktop calls `dispatch` first. Main thread.
class XSession {
 public:
  // `displayName` null: the display that DISPLAY names.
  explicit XSession(const char* displayName);
  ~XSession();
  XSession(const XSession&) = delete;
  XSession& operator=(const XSession&) = delete;

  bool present() const { return present_; }
  // The rest of this group only while present.
  xcb_connection_t* connection() const { return connection_.get(); }
  const xcb_screen_t& screen() const { return *screen_; }
  xcb_window_t root() const { return screen_->root; }
  const XAtoms& atoms() const { return atoms_; }
  // The number of the first event of an extension; nothing when the server lacks it.
  std::optional<std::uint8_t> fixesFirstEvent() const { return fixesFirstEvent_; }
  std::optional<std::uint8_t> randrFirstEvent() const { return randrFirstEvent_; }
  bool hasShape() const { return hasShape_; }
  // Whether the server tells which processes its clients are (X-Resource extension 1.2).
  bool tellsProcesses() const { return tellsProcesses_; }

  // Cairo keeps a connection's state in a device, which pictures drawn anywhere on it still refer
  // to later: the session ends it before the connection.
  void keepDrawingDevice(cairo_device_t* device);

  ScreenMetrics& metrics() const { return *metrics_; }

  // A listener takes itself out before it is destroyed.
  void addListener(XEventListener& listener);
  void removeListener(XEventListener& listener);

  // Whether moves and restackings of all top-level windows are heard.
  void watchTopLevels(bool watch);

  // Sends what is buffered, then hands out every event that has arrived; does not wait. Within
  // itself it does nothing.
  void dispatch();
  // Sends what is buffered; whether `dispatch` has something to do without new data arriving.
  bool prepareToWait();
  int fd() const;

 private:
  bool connect(const char* displayName);
  void learnExtensions();
  void lose();
  XcbEvent nextEvent();

  XcbConnectionPtr connection_;
  CairoDevicePtr drawingDevice_;
  const xcb_screen_t* screen_ = nullptr;
  bool present_ = false;
  XAtoms atoms_;
  std::optional<std::uint8_t> fixesFirstEvent_;
  std::optional<std::uint8_t> randrFirstEvent_;
  bool hasShape_ = false;
  bool tellsProcesses_ = false;
  std::unique_ptr<ScreenMetrics> metrics_;
  std::unique_ptr<XEventSource> source_;
  std::vector<XEventListener*> listeners_;  // null where one was removed during a turn
  XcbEvent queued_;
  bool dispatching_ = false;
};

}  // namespace vellora
