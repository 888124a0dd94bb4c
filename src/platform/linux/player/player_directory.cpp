#include "platform/linux/player/player_directory.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace vellora {
namespace {

constexpr std::string_view playerPrefix = "org.mpris.MediaPlayer2.";

// playerctl's daemon passes itself off as whichever player was active last, another one each time.
constexpr std::string_view standIn = "org.mpris.MediaPlayer2.playerctld";

}  // namespace

PlayerDirectory::PlayerDirectory(SessionBus bus, std::string desktopEntry)
    : bus_(std::move(bus)), desktopEntry_(std::move(desktopEntry)), end_(g_cancellable_new()) {}

PlayerDirectory::~PlayerDirectory() {
  g_cancellable_cancel(end_.get());
  room_.catchUp();  // each question still open ends here
}

PlayerDirectory::Found PlayerDirectory::find(const Deadline& deadline) {
  room_.catchUp();
  auto current = list(deadline);
  if (!current) return {.busName = {}, .complete = false};
  std::vector<std::shared_ptr<const Player>> asked;
  for (auto& [name, player] : *current) {
    const auto known = players_.find(name);
    // One that refused may only have been starting.
    if (known != players_.end() && (!known->second->answered || known->second->desktopEntry)) {
      player = known->second;
    } else {
      asked.push_back(player = ask(name));
    }
  }
  players_ = std::move(*current);
  const auto settled = [&] {
    return match() || std::ranges::all_of(asked, [](const auto& p) { return p->answered; });
  };
  const bool complete = room_.waitUntil(settled, deadline);
  return {.busName = match(), .complete = complete};
}

std::optional<std::map<std::string, std::shared_ptr<PlayerDirectory::Player>>>
PlayerDirectory::list(const Deadline& deadline) const {
  const GVariantPtr reply(g_dbus_connection_call_sync(
      bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "ListNames", nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE,
      deadline.remainingMilliseconds(), nullptr, nullptr));
  if (!reply) return std::nullopt;
  std::map<std::string, std::shared_ptr<Player>> players;
  const GVariantPtr names(g_variant_get_child_value(reply.get(), 0));
  for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
    const GVariantPtr name(g_variant_get_child_value(names.get(), i));
    const std::string_view text(g_variant_get_string(name.get(), nullptr));
    if (text.starts_with(playerPrefix) && text != standIn) players.emplace(text, nullptr);
  }
  return players;
}

std::shared_ptr<PlayerDirectory::Player> PlayerDirectory::ask(const std::string& busName) const {
  auto player = std::make_shared<Player>();
  room_.enter([&] {
    g_dbus_connection_call(
        bus_.get(), busName.c_str(), "/org/mpris/MediaPlayer2", "org.freedesktop.DBus.Properties",
        "Get", g_variant_new("(ss)", "org.mpris.MediaPlayer2", "DesktopEntry"),
        G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, end_.get(),
        &PlayerDirectory::answered, new std::shared_ptr<Player>(player));
  });
  return player;
}

std::optional<std::string> PlayerDirectory::match() const {
  const auto found = std::ranges::find_if(
      players_, [this](const auto& entry) { return entry.second->desktopEntry == desktopEntry_; });
  return found == players_.end() ? std::nullopt : std::optional(found->first);
}

void PlayerDirectory::answered(GObject* bus, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<std::shared_ptr<Player>> player(
      static_cast<std::shared_ptr<Player>*>(data));
  (*player)->answered = true;
  const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  if (!reply) return;
  const GVariantPtr boxed(g_variant_get_child_value(reply.get(), 0));
  const GVariantPtr value(g_variant_get_variant(boxed.get()));
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) == FALSE) return;
  (*player)->desktopEntry = g_variant_get_string(value.get(), nullptr);
}

}  // namespace vellora
