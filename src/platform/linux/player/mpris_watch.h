#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/player/bus_questions.h"
#include "platform/linux/player/player_state.h"
#include "platform/player_watch.h"

namespace vellora {

// Listens over MPRIS (MPRIS D-Bus Interface Specification 2.2), to every player but playerctl's
// stand-in. Each has one question open at most, however long it takes to answer, so that one that
// hangs holds up nobody and finds no heap of questions when it wakes. Main thread.
class MprisWatch final : public PlayerWatch {
 public:
  // Seconds: between two questions to a player while one plays, and while none does; between two
  // lists of players, and two looks for a bus; after which what a player said no longer counts.
  static constexpr double askInterval = 0.5, idleInterval = 2, listInterval = 2, patience = 4;
  // Between two looks for an answer: to a question that was just asked, and to one whose answer
  // is late.
  static constexpr double answerInterval = 0.1, lateInterval = 0.5;
  static constexpr std::size_t mostPlayers = 32;

  std::optional<HeardTrack> look(double now) override;
  double pause(double now) const override;

 private:
  struct Player {
    BusAnswerPtr identity;  // null: not asked yet
    BusAnswerPtr open;      // the question that is not answered yet; null: none is open
    double asked = 0;       // when the last question was
    double saidAt = 0;      // when `said` held
    std::optional<PlayerState> said;
  };

  void connect(double now);
  void takeList(double now);
  void hear(Player& player, double now) const;
  void ask(double now);
  // The bus name of the player to be told of; empty where there is none.
  std::string choose(double now) const;

  SessionBus bus_;
  std::unique_ptr<BusQuestions> questions_;  // while there is a bus
  BusAnswerPtr list_;                        // of players; null: none is open
  double triedAt_ = 0;
  double listedAt_ = 0;
  double listAskedAt_ = 0;
  std::map<std::string, Player> players_;  // by bus name
  std::string followed_;                   // that was told of last
};

}  // namespace vellora
