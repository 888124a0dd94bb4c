#include "platform/linux/player/mpris_scripting.h"

#include <optional>
#include <string>

#include "platform/linux/player/player_actions.h"
#include "platform/linux/player/player_request.h"
#include "platform/player.h"

namespace vellora {
namespace {

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

}  // namespace

ScriptOutcome MprisScripting::run(const ScriptRequest& request) {
  const Deadline deadline(patience_);
  if (!bus_) {
    bus_ = connectToSessionBus();
    if (!bus_) return withoutPlayer(request);
    directory_ = std::make_unique<PlayerDirectory>(shareObject(bus_.get()),
                                                   std::string(musicPlayer.identifier), windows_);
    silent_ = std::make_unique<SilentPlayer>(shareObject(bus_.get()));
  }
  const auto found = directory_->find(deadline);
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
