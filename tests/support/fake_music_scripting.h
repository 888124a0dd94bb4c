#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/music_scripting.h"

namespace vellora {

// A player that answers from a list. It keeps every request; `onRun` is called for each, before the
// answer.
class FakeMusicScripting final : public MusicScripting {
 public:
  ScriptOutcome run(const ScriptRequest& request) override {
    requests.push_back(request);
    if (onRun) onRun(request);
    if (outcomes.empty()) return standing;
    ScriptOutcome outcome = std::move(outcomes.front());
    outcomes.pop_front();
    return outcome;
  }

  static ScriptOutcome reply(std::string text) { return {true, std::move(text), std::nullopt}; }

  std::vector<ScriptRequest> requests;
  std::deque<ScriptOutcome> outcomes;  // used up first
  ScriptOutcome standing{true, "", std::nullopt};
  std::function<void(const ScriptRequest&)> onRun;
};

}  // namespace vellora
