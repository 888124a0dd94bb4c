#include "platform/linux/player/player_directory.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/linux/players/process_family.h"

namespace vellora {
namespace {

constexpr const char* playerNames = "org.mpris.MediaPlayer2";
constexpr std::string_view playerPrefix = "org.mpris.MediaPlayer2.";

constexpr std::chrono::seconds askInterval{3};

// playerctl's daemon passes itself off as whichever player was active last, another one each time.
constexpr std::string_view standIn = "org.mpris.MediaPlayer2.playerctld";

bool hasArrived(const BusAnswerPtr& answer) { return answer && answer->arrived; }

}  // namespace

PlayerDirectory::PlayerDirectory(SessionBus bus, std::string desktopEntry,
                                 std::shared_ptr<const PlayerWindows> windows)
    : questions_(std::move(bus)),
      desktopEntry_(std::move(desktopEntry)),
      windows_(windows ? std::move(windows) : std::make_shared<const PlayerWindows>()) {
  // What is known of a bus name is known of its owner.
  questions_.enter([this] {
    ownersHeard_ = g_dbus_connection_signal_subscribe(
        questions_.bus(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", playerNames, G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE,
        [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
           GVariant* arguments, gpointer self) {
          const gchar* name = nullptr;
          g_variant_get_child(arguments, 0, "&s", &name);
          auto& directory = *static_cast<PlayerDirectory*>(self);
          directory.players_.erase(name);
          directory.hasNews_ = true;
        },
        this, nullptr);
  });
}

PlayerDirectory::~PlayerDirectory() {
  g_dbus_connection_signal_unsubscribe(questions_.bus(), ownersHeard_);
  questions_.catchUp();
}

PlayerDirectory::Found PlayerDirectory::find(const Deadline& deadline, bool asksBus) {
  questions_.catchUp();
  if (!asksBus && knowsOfNone()) return {};
  if (!list(deadline)) return {.busName = {}, .complete = false, .listed = false};
  std::vector<BusAnswerPtr> asked;
  for (auto& [name, player] : players_) {
    // One that refused may only have been starting.
    if (!player.desktopEntry || (player.desktopEntry->arrived && !textOf(*player.desktopEntry))) {
      player.desktopEntry = questions_.askPlayer(name, playerNames, "DesktopEntry");
      asked.push_back(player.desktopEntry);
    }
  }
  const auto settled = [&] { return matchByEntry() || std::ranges::all_of(asked, hasArrived); };
  const bool complete = questions_.waitUntil(settled, deadline);
  if (auto name = matchByEntry()) return {.busName = std::move(name), .complete = complete};
  if (!complete) return {.busName = {}, .complete = false};
  return matchByProcess(deadline);
}

bool PlayerDirectory::knowsOfNone() const {
  return noneSince_ && !hasNews_ && std::chrono::steady_clock::now() - *noneSince_ < askInterval;
}

bool PlayerDirectory::list(const Deadline& deadline) {
  const auto asked = std::chrono::steady_clock::now();
  hasNews_ = false;
  const GVariantPtr reply(g_dbus_connection_call_sync(
      questions_.bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "ListNames", nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE,
      deadline.remainingMilliseconds(), nullptr, nullptr));
  if (!reply) return false;
  questions_.catchUp();  // with the changes of owners before the list
  std::map<std::string, Player> listed;
  const GVariantPtr names(g_variant_get_child_value(reply.get(), 0));
  for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
    const GVariantPtr name(g_variant_get_child_value(names.get(), i));
    const std::string_view text(g_variant_get_string(name.get(), nullptr));
    if (!text.starts_with(playerPrefix) || text == standIn) continue;
    const auto known = players_.find(std::string(text));
    listed.emplace(text, known == players_.end() ? Player() : known->second);
  }
  players_ = std::move(listed);
  noneSince_ = players_.empty() ? std::optional(asked) : std::nullopt;
  return true;
}

std::optional<std::string> PlayerDirectory::matchByEntry() const {
  const auto found = std::ranges::find_if(players_, [this](const auto& entry) {
    return textOf(*entry.second.desktopEntry) == desktopEntry_;
  });
  return found == players_.end() ? std::nullopt : std::optional(found->first);
}

PlayerDirectory::Found PlayerDirectory::matchByProcess(const Deadline& deadline) {
  const auto windows = windows_->all();
  if (windows.empty()) return {};
  for (auto& [name, player] : players_) {
    if (!player.process) player.process = questions_.askDaemon("GetConnectionUnixProcessID", name);
  }
  const auto areKnown = [this] {
    return std::ranges::all_of(players_,
                               [](const auto& entry) { return hasArrived(entry.second.process); });
  };
  if (!questions_.waitUntil(areKnown, deadline)) return {.busName = {}, .complete = false};
  for (const PlayerWindow& window : windows) {
    const auto names = playersOf(window.process);
    if (!names.empty()) return choose(names, deadline);
  }
  return {};
}

std::vector<std::string> PlayerDirectory::playersOf(std::int32_t process) const {
  std::vector<std::string> names;
  for (const auto& [name, player] : players_) {
    const auto owner = numberOf(*player.process);
    if (owner && belongTogether(static_cast<std::int32_t>(*owner), process)) names.push_back(name);
  }
  return names;
}

PlayerDirectory::Found PlayerDirectory::choose(const std::vector<std::string>& busNames,
                                               const Deadline& deadline) {
  if (busNames.size() == 1) return {.busName = busNames[0]};
  std::vector<std::pair<std::string, BusAnswerPtr>> asked;
  for (const std::string& name : busNames) {
    BusAnswerPtr& status = players_[name].status;
    if (status && !status->arrived) continue;  // it still owes an answer
    status = questions_.askPlayer(name, "org.mpris.MediaPlayer2.Player", "PlaybackStatus");
    asked.emplace_back(name, status);
  }
  if (asked.empty()) return {.busName = busNames[0]};
  // Settles by the first that either plays or still has to say.
  const auto first = [&asked] {
    return std::ranges::find_if(asked, [](const auto& one) {
      return !one.second->arrived || textOf(*one.second) == "Playing";
    });
  };
  const bool complete = questions_.waitUntil(
      [&] { return first() == asked.end() || first()->second->arrived; }, deadline);
  const auto chosen = first();
  return {.busName = chosen == asked.end() ? asked[0].first : chosen->first, .complete = complete};
}

}  // namespace vellora
