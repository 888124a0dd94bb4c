#include "platform/linux/glib/bus_watch.h"

#include <chrono>
#include <utility>

#include "platform/linux/glib/event_source.h"

namespace vellora {
namespace {

constexpr guint lookInterval = 250;  // milliseconds

// A bus that is there answers sooner; one that is not must not hold up the program each time.
constexpr std::chrono::milliseconds lookPatience{20};

}  // namespace

BusWatch::BusWatch(std::function<void(const SessionBus& bus)> present, std::function<void()> gone)
    : present_(std::move(present)), gone_(std::move(gone)) {
  look(busPatience);
  if (!bus_) lookLater();
}

BusWatch::~BusWatch() { drop(); }

void BusWatch::look(std::chrono::milliseconds patience) {
  bus_ = connectToSessionBus(patience);
  if (!bus_) return;
  looking_.reset();
  closing_ = g_signal_connect(bus_.get(), "closed", G_CALLBACK(&BusWatch::closed), this);
  present_(bus_);
}

void BusWatch::lookLater() {
  looking_ = attachSource(g_timeout_source_new(lookInterval), [this] { look(lookPatience); });
}

void BusWatch::drop() {
  if (bus_) g_signal_handler_disconnect(bus_.get(), closing_);
  bus_.reset();
}

void BusWatch::closed(GDBusConnection*, gboolean, GError*, gpointer data) noexcept {
  auto& self = *static_cast<BusWatch*>(data);
  self.drop();
  self.gone_();
  self.lookLater();
}

}  // namespace vellora
