#include "companion/readings/song_readings.h"

#include <chrono>
#include <utility>

namespace vellora::companion {

SongReadings::SongReadings(ReadingKind kind, std::string dictionary)
    : reader_(kind, std::move(dictionary)), thread_([this] { work(); }) {}

SongReadings::~SongReadings() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    dropped_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void SongReadings::begin(Song& song) {
  std::vector<std::string> lines;
  lines.reserve(song.lines.size());
  for (const SongLine& line : song.lines) lines.push_back(line.source);
  order(std::move(lines));
  {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::duration<double>(patience),
                      [this] { return done_.has_value(); });
  }
  take(song);
}

void SongReadings::drop() {
  order(std::nullopt);
  notice_.clear();
}

bool SongReadings::step(double /*now*/, Song& song) { return take(song); }

void SongReadings::order(std::optional<std::vector<std::string>> lines) {
  awaited_ = lines.has_value();
  const std::lock_guard lock(mutex_);
  wanted_ = std::move(lines);
  done_.reset();
  problem_.clear();
  dropped_ = true;
  changed_.notify_all();
}

bool SongReadings::take(Song& song) {
  std::optional<std::vector<std::string>> readings;
  {
    const std::lock_guard lock(mutex_);
    readings = std::exchange(done_, std::nullopt);
    notice_ = problem_;
  }
  if (readings) awaited_ = false;
  if (!readings || readings->size() != song.lines.size()) return false;
  for (std::size_t i = 0; i < song.lines.size(); ++i) {
    song.lines[i].reading = std::move((*readings)[i]);
  }
  return true;
}

void SongReadings::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || wanted_; });
    if (ending_) return;
    const std::vector<std::string> lines = *std::exchange(wanted_, std::nullopt);
    dropped_ = false;
    lock.unlock();
    std::vector<std::string> readings = reader_.read(lines, [this] {
      const std::lock_guard inside(mutex_);
      return !dropped_;
    });
    lock.lock();
    if (dropped_) continue;
    done_ = std::move(readings);
    problem_ = reader_.problem();
    changed_.notify_all();
  }
}

}  // namespace vellora::companion
