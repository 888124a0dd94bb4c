#include "platform/linux/player/track_change.h"

#include "platform/linux/glib/waiting_room.h"
#include "platform/linux/player/player_state.h"

namespace vellora {

// PropertiesChanged of the player's bus name, counted.
class TrackChange::Signals {
 public:
  explicit Signals(const PlayerRequest& request) : bus_(request.bus()) {
    room_.enter([&] {
      subscription_ = g_dbus_connection_signal_subscribe(
          bus_, request.busName().c_str(), "org.freedesktop.DBus.Properties", "PropertiesChanged",
          "/org/mpris/MediaPlayer2", nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
          [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant*,
             gpointer self) { ++static_cast<Signals*>(self)->count_; },
          this, nullptr);
    });
  }
  ~Signals() {
    g_dbus_connection_signal_unsubscribe(bus_, subscription_);
    room_.catchUp();
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  int count() const { return count_; }
  bool waitForMoreThan(int count, const Deadline& deadline) const {
    return room_.waitUntil([&] { return count_ > count; }, deadline);
  }

 private:
  GDBusConnection* bus_;
  WaitingRoom room_;
  guint subscription_ = 0;
  int count_ = 0;
};

TrackChange::TrackChange(PlayerRequest& request)
    : request_(request), signals_(std::make_unique<Signals>(request)) {}

TrackChange::~TrackChange() = default;

void TrackChange::await(const std::string& trackId) {
  while (true) {
    const int seen = signals_->count();
    const auto state = readState(request_);
    if (request_.failed() || state.track.id == trackId) return;
    if (!signals_->waitForMoreThan(seen, request_.deadline())) {
      request_.fail("the player did not change to the track in time");
      return;
    }
  }
}

}  // namespace vellora
