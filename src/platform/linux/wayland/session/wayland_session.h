#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/session/outputs.h"
#include "platform/linux/wayland/session/wayland_ptr.h"

namespace vellora {

// Hears what becomes of the connection. Main thread.
class WaylandListener {
 public:
  virtual ~WaylandListener() = default;

  // An output came, went or became another.
  virtual void outputsChanged() {}
  // The connection is gone for good, and every surface with it.
  virtual void sessionLost() {}
};

// The connection to a Wayland compositor, which may be absent from the start or be lost: then
// nothing of it works, and nothing of it fails loudly. Listens on GLib's default main context;
// nothing here waits once it is made. Whoever makes objects on the connection keeps the session for
// as long. Main thread.
class WaylandSession {
 public:
  // Waits for the compositor's answers for at most two seconds. `displayName` is a value of
  // WAYLAND_DISPLAY; null or empty: there is no compositor.
  explicit WaylandSession(const char* displayName);
  ~WaylandSession();
  WaylandSession(const WaylandSession&) = delete;
  WaylandSession& operator=(const WaylandSession&) = delete;

  // Whether there is a connection, and a compositor that can show a panel.
  bool present() const { return present_; }
  // Whether a compositor answered at the start.
  bool answered() const { return answered_; }
  // The first interface that a panel needs and that the compositor, which answered, does not offer;
  // empty where all are there.
  const std::string& missing() const { return missing_; }

  // The rest only while present. `fractionalScales` may be null, the others are not.
  wl_display* display() const { return display_.get(); }
  wl_compositor* compositor() const { return compositor_.get(); }
  wl_shm* memory() const { return memory_.get(); }
  zwlr_layer_shell_v1* layerShell() const { return layerShell_.get(); }
  wp_viewporter* viewporter() const { return viewporter_.get(); }
  wp_fractional_scale_manager_v1* fractionalScales() const { return fractionalScales_.get(); }
  Outputs& outputs() { return outputs_; }

  // Empty when the session is not present.
  const OutputLayout& layout() const;

  // A listener takes itself out before it is destroyed.
  void addListener(WaylandListener& listener);
  void removeListener(WaylandListener& listener);

  // Sends what is buffered, then hands out every event that has arrived. Within itself it does
  // nothing.
  void dispatch();
  // Sends what is buffered, as far as the compositor takes it; the rest goes when it takes more.
  void flush();
  // Sends what is buffered; whether `dispatch` has something to do without new data arriving.
  bool prepareToWait();

 private:
  class Source;

  bool connect(const char* displayName);
  void close();
  std::string firstMissing() const;
  void bindGlobal(std::uint32_t id, const char* interface, std::uint32_t version);
  void tell(void (WaylandListener::*event)());
  void lose();
  static const wl_registry_listener registryListener;

  WlDisplayPtr display_;
  WlRegistryPtr registry_;
  WlCompositorPtr compositor_;
  WlShmPtr memory_;
  LayerShellPtr layerShell_;
  ViewporterPtr viewporter_;
  FractionalScalesPtr fractionalScales_;
  OutputManagerPtr outputManager_;
  Outputs outputs_;
  bool present_ = false;
  bool answered_ = false;
  std::string missing_;
  std::unique_ptr<Source> source_;
  std::vector<WaylandListener*> listeners_;  // null where one was removed meanwhile
  int telling_ = 0;
  bool dispatching_ = false;
};

}  // namespace vellora
