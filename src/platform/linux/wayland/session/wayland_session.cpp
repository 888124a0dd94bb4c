#include "platform/linux/wayland/session/wayland_session.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <utility>

#include <glib-unix.h>

#include "platform/linux/wayland/session/bounded_connection.h"

namespace vellora {
namespace {

constexpr std::chrono::milliseconds connectPatience{2000};

// Damage in a buffer's own pixels (wl_surface.damage_buffer).
constexpr std::uint32_t compositorVersion = 4;

template <typename Pointer>
void take(Pointer& bound, wl_registry* registry, std::uint32_t id, const wl_interface& interface,
          std::uint32_t version) {
  if (bound) return;
  bound.reset(
      static_cast<typename Pointer::pointer>(wl_registry_bind(registry, id, &interface, version)));
}

}  // namespace

// Has GLib's default main context dispatch the session's events: when the connection has data or,
// while something could not be sent, room.
class WaylandSession::Source {
 public:
  explicit Source(WaylandSession& session) : source_(g_source_new(&functions, sizeof(Data))) {
    data(source_.get()).session = &session;
    data(source_.get()).watchedFd =
        g_source_add_unix_fd(source_.get(), wl_display_get_fd(session.display()), waiting);
    g_source_set_name(source_.get(), "Wayland events");
    g_source_attach(source_.get(), nullptr);
  }

  void watchForRoom(bool watch) {
    if (watch == watchesRoom_) return;
    watchesRoom_ = watch;
    g_source_modify_unix_fd(source_.get(), data(source_.get()).watchedFd,
                            watch ? static_cast<GIOCondition>(waiting | G_IO_OUT) : waiting);
  }

 private:
  // GLib allocates the structure, its own part first.
  struct Data {
    GSource base;
    WaylandSession* session;
    gpointer watchedFd;
  };
  static constexpr auto waiting = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR);

  static Data& data(GSource* source) { return *reinterpret_cast<Data*>(source); }
  static gboolean prepare(GSource* source, gint* timeout) {
    *timeout = -1;
    return data(source).session->prepareToWait() ? TRUE : FALSE;
  }
  static gboolean check(GSource* source) {
    return g_source_query_unix_fd(source, data(source).watchedFd) != 0 ? TRUE : FALSE;
  }
  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    data(source).session->dispatch();
    return G_SOURCE_CONTINUE;
  }
  static inline GSourceFuncs functions{prepare, check, dispatch, nullptr, nullptr, nullptr};

  GSourcePtr source_;
  bool watchesRoom_ = false;
};

const wl_registry_listener WaylandSession::registryListener{
    .global =
        [](void* data, wl_registry*, std::uint32_t id, const char* interface,
           std::uint32_t version) {
          static_cast<WaylandSession*>(data)->bindGlobal(id, interface, version);
        },
    .global_remove =
        [](void* data, wl_registry*, std::uint32_t id) {
          static_cast<WaylandSession*>(data)->outputs_.remove(id);
        },
};

WaylandSession::WaylandSession(const char* displayName)
    : outputs_([this] { tell(&WaylandListener::outputsChanged); }) {
  present_ = connect(displayName);
  if (present_) {
    source_ = std::make_unique<Source>(*this);
  } else {
    close();
  }
}

WaylandSession::~WaylandSession() { close(); }

// The compositor answers the first question when it has told all that it offers, and the second
// when it has told of its outputs.
bool WaylandSession::connect(const char* displayName) {
  const Deadline deadline(connectPatience);
  display_ = connectToCompositor(displayName, deadline);
  if (!display_) return false;
  registry_.reset(wl_display_get_registry(display_.get()));
  wl_registry_add_listener(registry_.get(), &registryListener, this);
  for (int question = 0; question < 2; ++question) {
    static constexpr wl_callback_listener listener{
        .done = [](void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; }};
    bool isAnswered = false;
    const WlCallbackPtr callback(wl_display_sync(display_.get()));
    wl_callback_add_listener(callback.get(), &listener, &isAnswered);
    if (!exchangeUntil(
            display_.get(), [&] { return isAnswered; }, deadline))
      return false;
    answered_ = true;
    missing_ = firstMissing();
    if (!missing_.empty()) return false;
  }
  return wl_display_get_error(display_.get()) == 0;
}

void WaylandSession::close() {
  source_.reset();
  outputs_.clear();
  outputManager_.reset();
  fractionalScales_.reset();
  viewporter_.reset();
  layerShell_.reset();
  memory_.reset();
  compositor_.reset();
  registry_.reset();
  display_.reset();
}

void WaylandSession::bindGlobal(std::uint32_t id, const char* interface, std::uint32_t version) {
  const std::string_view name = interface;
  wl_registry* const registry = registry_.get();
  if (name == wl_compositor_interface.name && version >= compositorVersion) {
    take(compositor_, registry, id, wl_compositor_interface, compositorVersion);
  } else if (name == wl_shm_interface.name) {
    take(memory_, registry, id, wl_shm_interface, 1);
  } else if (name == zwlr_layer_shell_v1_interface.name) {
    take(layerShell_, registry, id, zwlr_layer_shell_v1_interface, std::min(version, 4u));
  } else if (name == wp_viewporter_interface.name) {
    take(viewporter_, registry, id, wp_viewporter_interface, 1);
  } else if (name == wp_fractional_scale_manager_v1_interface.name) {
    take(fractionalScales_, registry, id, wp_fractional_scale_manager_v1_interface, 1);
  } else if (name == zxdg_output_manager_v1_interface.name) {
    take(outputManager_, registry, id, zxdg_output_manager_v1_interface, std::min(version, 3u));
    outputs_.setManager(outputManager_.get());
  } else if (name == wl_output_interface.name && version >= 2) {
    outputs_.add(id, WlOutputPtr(static_cast<wl_output*>(wl_registry_bind(
                         registry, id, &wl_output_interface, std::min(version, 4u)))));
  }
}

std::string WaylandSession::firstMissing() const {
  if (!compositor_) return wl_compositor_interface.name;
  if (!memory_) return wl_shm_interface.name;
  if (!layerShell_) return zwlr_layer_shell_v1_interface.name;
  if (!viewporter_) return wp_viewporter_interface.name;
  return "";
}

const OutputLayout& WaylandSession::layout() const {
  static const OutputLayout none;
  return present_ ? outputs_.layout() : none;
}

void WaylandSession::addListener(WaylandListener& listener) { listeners_.push_back(&listener); }

void WaylandSession::removeListener(WaylandListener& listener) {
  std::ranges::replace(listeners_, &listener, static_cast<WaylandListener*>(nullptr));
  if (telling_ == 0) std::erase(listeners_, nullptr);
}

// By index: a listener may add another.
void WaylandSession::tell(void (WaylandListener::*event)()) {
  ++telling_;
  for (std::size_t i = 0; i < listeners_.size(); ++i) {
    if (listeners_[i] != nullptr) (listeners_[i]->*event)();
  }
  if (--telling_ == 0) std::erase(listeners_, nullptr);
}

void WaylandSession::dispatch() {
  if (!present_ || dispatching_) return;
  dispatching_ = true;
  flush();
  while (wl_display_prepare_read(display_.get()) != 0) {
    if (wl_display_dispatch_pending(display_.get()) < 0) break;
  }
  // With nothing there it reads nothing.
  if (wl_display_get_error(display_.get()) == 0 && wl_display_read_events(display_.get()) == 0) {
    wl_display_dispatch_pending(display_.get());
  }
  flush();
  dispatching_ = false;
  if (wl_display_get_error(display_.get()) != 0) lose();
}

void WaylandSession::flush() {
  if (!present_) return;
  const bool full = wl_display_flush(display_.get()) < 0 && errno == EAGAIN;
  if (source_) source_->watchForRoom(full);
}

bool WaylandSession::prepareToWait() {
  if (!present_) return false;
  flush();
  if (wl_display_get_error(display_.get()) != 0) return true;
  if (wl_display_prepare_read(display_.get()) != 0) return true;
  wl_display_cancel_read(display_.get());
  return false;
}

// The connection itself is kept: others still hold on to what they made with it.
void WaylandSession::lose() {
  present_ = false;
  source_.reset();
  tell(&WaylandListener::sessionLost);
}

}  // namespace vellora
