#include "platform/linux/player/mpris_scripting.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "base/environment.h"
#include "base/number_text.h"
#include "platform/linux/player/player_actions.h"
#include "platform/linux/player/player_request.h"
#include "platform/player.h"

namespace vellora {
namespace {

constexpr const char* bus = "org.freedesktop.DBus";

ScriptOutcome replied(std::string reply) {
  return {.created = true, .reply = std::move(reply), .errorDescription = {}};
}

ScriptOutcome refused(std::string description) {
  return {.created = true, .reply = {}, .errorDescription = std::move(description)};
}

// Nothing plays where there is no player; only a command needs one.
ScriptOutcome withoutPlayer(const ScriptRequest& request) {
  if (!request.command) return replied("");
  return refused("no player with the desktop entry " + std::string(musicPlayer.identifier) +
                 " or a described window is running");
}

ScriptOutcome withoutBus(const ScriptRequest& request) {
  return request.command ? refused("there is no session bus that answers") : replied("");
}

}  // namespace

std::chrono::milliseconds MprisScripting::chosenPatience() {
  constexpr double longest = 60;
  const auto chosen = environmentVariable("VELLORA_PLAYER_PATIENCE");
  const auto seconds = chosen ? parseDecimal(*chosen) : std::nullopt;
  if (!seconds || !(*seconds > 0)) return defaultPatience;
  return std::chrono::milliseconds(std::lround(std::min(*seconds, longest) * 1000));
}

void MprisScripting::useBus(const SessionBus& present) {
  bus_ = shareObject(present.get());
  directory_ = std::make_unique<PlayerDirectory>(shareObject(bus_.get()),
                                                 std::string(musicPlayer.identifier), windows_);
  silent_ = std::make_unique<SilentPlayer>(shareObject(bus_.get()));
}

void MprisScripting::leaveBus() {
  silent_.reset();
  directory_.reset();
  bus_.reset();
}

ScriptOutcome MprisScripting::run(const ScriptRequest& request) {
  if (!watch_) {
    watch_.emplace([this](const SessionBus& present) { useBus(present); }, [this] { leaveBus(); });
  }
  if (!bus_) return withoutBus(request);
  auto outcome = askPlayer(request);
  // What a bus that has just gone leaves behind is no answer of a player.
  return g_dbus_connection_is_closed(bus_.get()) != FALSE ? withoutBus(request) : outcome;
}

ScriptOutcome MprisScripting::askPlayer(const ScriptRequest& request) {
  const Deadline deadline(patience_);
  if (silent_->isSilent(bus)) {
    return request.command ? refused("the session bus still does not answer") : replied("");
  }
  const auto found = directory_->find(deadline, request.command.has_value());
  if (!found.listed) {
    silent_->note(bus);
    return refused("the session bus did not answer in time");
  }
  if (!found.busName) {
    return found.complete ? withoutPlayer(request) : refused("a player did not answer in time");
  }
  if (silent_->isSilent(*found.busName)) return refused("the player still does not answer");
  PlayerRequest calls(bus_.get(), *found.busName, deadline);
  auto reply = request.command ? carryOut(calls, *request.command) : nowPlayingReply(calls);
  if (calls.playerIsSilent()) silent_->note(*found.busName);
  if (calls.playerIsGone()) return withoutPlayer(request);
  if (calls.failed()) return refused(*calls.failure());
  return replied(std::move(reply));
}

}  // namespace vellora
