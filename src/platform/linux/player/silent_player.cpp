#include "platform/linux/player/silent_player.h"

#include <utility>

namespace vellora {

SilentPlayer::SilentPlayer(SessionBus bus) : bus_(std::move(bus)), end_(g_cancellable_new()) {}

SilentPlayer::~SilentPlayer() {
  g_cancellable_cancel(end_.get());
  room_.catchUp();  // a question still open ends here
}

// Asked for a property: a Ping could be answered by a thread of a player whose main loop hangs.
void SilentPlayer::note(const std::string& busName) {
  busName_ = busName;
  owes_ = std::make_shared<bool>(true);
  room_.enter([&] {
    g_dbus_connection_call(bus_.get(), busName.c_str(), "/org/mpris/MediaPlayer2",
                           "org.freedesktop.DBus.Properties", "Get",
                           g_variant_new("(ss)", "org.mpris.MediaPlayer2.Player", "PlaybackStatus"),
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, end_.get(),
                           &SilentPlayer::answered, new std::shared_ptr<bool>(owes_));
  });
}

bool SilentPlayer::isSilent(const std::string& busName) {
  room_.catchUp();
  return *owes_ && busName == busName_;
}

// An error counts, too: the player is back, or it is gone.
void SilentPlayer::answered(GObject* bus, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<std::shared_ptr<bool>> owes(static_cast<std::shared_ptr<bool>*>(data));
  **owes = false;
  const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
}

}  // namespace vellora
