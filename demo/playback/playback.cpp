#include "playback/playback.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vellora::demo {

Playback::Playback(std::vector<Song> songs, std::function<double()> clock)
    : songs_(std::move(songs)), clock_(std::move(clock)), anchorTime_(clock_()) {}

void Playback::listen(Listener listener) { listeners_.push_back(std::move(listener)); }

double Playback::position() const {
  double position = anchorPosition_;
  if (status_ == Status::playing) position += (clock_() - anchorTime_) * rate_;
  return std::min(position, song().length);
}

void Playback::play() { setStatus(Status::playing); }

void Playback::pause() {
  if (status_ == Status::playing) setStatus(Status::paused);
}

void Playback::playPause() {
  setStatus(status_ == Status::playing ? Status::paused : Status::playing);
}

void Playback::stop() {
  if (status_ == Status::stopped) return;
  status_ = Status::stopped;
  moveTo(0);
  tell({.status = true});
}

void Playback::next() { begin((index_ + 1) % songs_.size(), status_); }

void Playback::previous() { begin((index_ + songs_.size() - 1) % songs_.size(), status_); }

void Playback::goTo(std::size_t index) {
  if (index < songs_.size()) begin(index, Status::playing);
}

void Playback::seek(double offset) {
  if (std::isnan(offset)) return;
  const double target = position() + offset;
  if (target > song().length) return next();
  moveTo(std::max(target, 0.0));
  tell({.position = true});
}

void Playback::setPosition(double position) {
  if (!(position >= 0 && position <= song().length)) return;
  moveTo(position);
  tell({.position = true});
}

void Playback::setRate(double rate) {
  if (rate == 0) return pause();
  if (!(rate >= minimumRate && rate <= maximumRate) || rate == rate_) return;
  moveTo(position());
  rate_ = rate;
  tell({.rate = true});
}

void Playback::setVolume(double volume) {
  volume = std::max(volume, 0.0);
  if (!std::isfinite(volume) || volume == volume_) return;
  volume_ = volume;
  tell({.volume = true});
}

void Playback::advance() {
  if (status_ == Status::playing && position() >= song().length) next();
}

void Playback::moveTo(double position) {
  anchorPosition_ = position;
  anchorTime_ = clock_();
}

void Playback::begin(std::size_t index, Status status) {
  const Change change{.track = index != index_,
                      .status = status != status_,
                      .position = index == index_};  // the same song again: a jump to its begin
  index_ = index;
  status_ = status;
  moveTo(0);
  tell(change);
}

void Playback::setStatus(Status status) {
  if (status == status_) return;
  moveTo(position());
  status_ = status;
  tell({.status = true});
}

void Playback::tell(const Change& change) const {
  for (const Listener& listener : listeners_) listener(change);
}

}  // namespace vellora::demo
