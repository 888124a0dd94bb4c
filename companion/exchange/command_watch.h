#pragma once

#include <optional>
#include <string>

#include "companion/exchange/renewal.h"
#include "exchange/records/records.h"

namespace vellora::companion {

// Where a seek goes.
struct SeekTarget {
  double seconds = 0;
  bool relative = false;  // from where the player is
};

// One player command from its sending to its effect, without its files and its clock: waits for a
// publication that shows that the overlay is there and where the player stands, sends the command,
// waits until the overlay has taken it, then until what is published shows its effect. One thread.
class CommandWatch {
 public:
  // Seconds: for the first publication and an older command's end; for the overlay to take it.
  static constexpr double firstPatience = 2, takingPatience = 3;

  enum class Outcome {
    waiting,
    done,
    notTaken,  // no overlay takes commands
    noEffect   // taken, but the player did not do it
  };

  // `target`: of seek, and of play. `patience`: seconds for the effect. `known`: what is published
  // now, for who has followed it; then no publication is waited for.
  CommandWatch(MusicCommand command, SeekTarget target, double patience,
               std::optional<NowPlayingTrack> known = std::nullopt);

  // What is to be written now.
  struct Step {
    std::optional<SyncRequest> sync;
    std::optional<MusicCommand> command;
    bool withdraw = false;  // remove the command that nobody takes
    Outcome outcome = Outcome::waiting;
  };

  // To be called several times a second. `published` is what stands in the now-playing file,
  // `waits` whether a command stands in the command file.
  Step step(double now, const std::optional<NowPlayingTrack>& published, bool waits);

  // What happened, in a sentence, once the outcome is known.
  std::string report() const;

 private:
  enum class Phase { beforehand, sent, taken, over };

  void prepare(double now, const std::optional<NowPlayingTrack>& published, bool waits, Step& step);
  void send(double now, Step& step);
  bool shows(double now, const NowPlayingTrack& after) const;
  bool anotherTrackOrPlace(double now, const NowPlayingTrack& after) const;
  void end(Outcome outcome, Step& step);
  std::string explanation() const;

  MusicCommand command_;
  SeekTarget target_;
  double patience_;
  Phase phase_ = Phase::beforehand;
  Outcome outcome_ = Outcome::waiting;
  std::optional<double> begin_;
  double since_ = 0;  // of the phase
  std::optional<NowPlayingTrack> before_;
  std::optional<NowPlayingTrack> after_;
  Renewal sync_{5};
};

// Whether both tell of one song, wherever in it the player is.
bool sameTrack(const NowPlayingTrack& a, const NowPlayingTrack& b);

// "playing “Title” by Artist at 1:23", for people.
std::string describe(const NowPlayingTrack& track, double position);

}  // namespace vellora::companion
