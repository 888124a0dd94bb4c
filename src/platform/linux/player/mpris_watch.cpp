#include "platform/linux/player/mpris_watch.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace vellora {
namespace {

constexpr const char* root = "org.mpris.MediaPlayer2";
constexpr std::string_view prefix = "org.mpris.MediaPlayer2.";
// playerctl's daemon passes itself off as whichever player was active last.
constexpr std::string_view standIn = "org.mpris.MediaPlayer2.playerctld";

// An answer that comes sooner tells what was when it was asked for, rather than what is now.
constexpr double promptly = 0.25;  // seconds
constexpr double microseconds = 1e-6;

// Also where the clock was set back.
bool isDue(double now, double last, double interval) {
  return now - last >= interval || now < last;
}

}  // namespace

std::unique_ptr<PlayerWatch> makePlayerWatch() { return std::make_unique<MprisWatch>(); }

std::optional<HeardTrack> MprisWatch::look(double now) {
  connect(now);
  if (!questions_) return std::nullopt;
  questions_->catchUp();
  takeList(now);
  for (auto& [name, player] : players_) hear(player, now);
  followed_ = choose(now);
  ask(now);
  if (followed_.empty()) return std::nullopt;
  const Player& player = players_.at(followed_);
  const PlayerState& said = *player.said;
  const auto identity = player.identity ? textOf(*player.identity) : std::nullopt;
  HeardTrack heard;
  heard.player = identity && !identity->empty() ? *identity : followed_.substr(prefix.size());
  heard.track =
      NowPlayingTrack(player.saidAt, said.track.title, said.track.artist, said.track.album,
                      static_cast<double>(said.position) * microseconds, said.playing());
  return heard;
}

// The answers come at the next look.
double MprisWatch::pause(double now) const {
  const auto until = [now](double last, double interval) {
    return isDue(now, last, interval) ? 0 : last + interval - now;
  };
  if (!questions_) return until(triedAt_, askInterval);
  const auto forAnswer = [&](double asked) {
    return now - asked < lateInterval && now >= asked ? answerInterval : lateInterval;
  };
  double pause = list_ ? forAnswer(listAskedAt_) : until(listedAt_, listInterval);
  const double interval = followed_.empty() ? idleInterval : askInterval;
  for (const auto& [name, player] : players_) {
    pause = std::min(pause, player.open ? forAnswer(player.asked) : until(player.asked, interval));
  }
  return pause;
}

// The connection is made on another thread, and is here at a later look.
void MprisWatch::connect(double now) {
  if (bus_ && g_dbus_connection_is_closed(bus_.get()) != FALSE) {
    list_.reset();
    players_.clear();
    followed_.clear();
    questions_.reset();
    bus_.reset();
  }
  if (bus_ || !isDue(now, triedAt_, askInterval)) return;
  // GLib keeps a connection that ended until it has told so here, and gives it to whoever asks.
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
  triedAt_ = now;
  bus_ = connectToSessionBus(std::chrono::milliseconds(0));
  if (bus_) questions_ = std::make_unique<BusQuestions>(shareObject(bus_.get()));
}

void MprisWatch::takeList(double now) {
  if (!list_ || !list_->arrived) return;
  const BusAnswerPtr list = std::exchange(list_, nullptr);
  listedAt_ = now;
  if (!list->value ||
      g_variant_is_of_type(list->value.get(), G_VARIANT_TYPE_STRING_ARRAY) == FALSE) {
    return;
  }
  std::map<std::string, Player> listed;
  for (gsize i = 0; i < g_variant_n_children(list->value.get()); ++i) {
    const GVariantPtr name(g_variant_get_child_value(list->value.get(), i));
    const std::string text(g_variant_get_string(name.get(), nullptr));
    if (!text.starts_with(prefix) || text == standIn || listed.size() == mostPlayers) continue;
    const auto known = players_.find(text);
    listed.emplace(text, known == players_.end() ? Player() : std::move(known->second));
  }
  players_ = std::move(listed);
}

void MprisWatch::hear(Player& player, double now) const {
  if (!player.open || !player.open->arrived) return;
  const BusAnswerPtr answer = std::exchange(player.open, nullptr);
  player.said.reset();
  if (!answer->value ||
      g_variant_is_of_type(answer->value.get(), G_VARIANT_TYPE_VARDICT) == FALSE) {
    return;
  }
  player.said = readState(answer->value.get());
  const bool prompt = now >= player.asked && now - player.asked < promptly;
  player.saidAt = prompt ? player.asked : now;
}

std::string MprisWatch::choose(double now) const {
  const auto tells = [&](const Player& player) {
    return player.said && !player.said->track.title.empty() && !player.said->stopped() &&
           now - player.saidAt < patience && now >= player.saidAt;
  };
  const auto followed = players_.find(followed_);
  const bool stays = followed != players_.end() && tells(followed->second);
  if (stays && followed->second.said->playing()) return followed_;
  for (const auto& [name, player] : players_) {
    if (tells(player) && player.said->playing()) return name;
  }
  return stays ? followed_ : std::string();
}

void MprisWatch::ask(double now) {
  if (!list_ && isDue(now, listedAt_, listInterval)) {
    list_ = questions_->listNames();
    listAskedAt_ = now;
  }
  const double interval = followed_.empty() ? idleInterval : askInterval;
  for (auto& [name, player] : players_) {
    if (!player.identity) player.identity = questions_->askPlayer(name, root, "Identity");
    if (player.open || !isDue(now, player.asked, interval)) continue;
    player.open = questions_->askPlayerAll(name, "org.mpris.MediaPlayer2.Player");
    player.asked = now;
  }
}

}  // namespace vellora
