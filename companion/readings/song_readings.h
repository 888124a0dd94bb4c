#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "companion/readings/reader.h"
#include "companion/song/song_addition.h"

namespace vellora::companion {

// Adds the readings to a song's lines. They are made on a thread of its own, for the first song of
// a script loads what the script needs, which takes up to a quarter of a second. The destructor
// waits for the line that is being read. Main thread.
class SongReadings final : public SongAddition {
 public:
  // Seconds that a song's beginning waits for its readings, so that most have them from the first
  // caption on.
  static constexpr double patience = 0.03;

  explicit SongReadings(ReadingKind kind, std::string dictionary = {});
  ~SongReadings() override;
  SongReadings(const SongReadings&) = delete;
  SongReadings& operator=(const SongReadings&) = delete;

  void begin(Song& song) override;
  void drop() override;
  bool step(double now, Song& song) override;
  bool underWay() const override { return awaited_; }
  std::string notice() const override { return notice_; }

 private:
  void work();
  void order(std::optional<std::vector<std::string>> lines);
  bool take(Song& song);

  Reader reader_;  // the thread's alone
  std::string notice_;
  bool awaited_ = false;  // readings that were ordered
  std::mutex mutex_;      // guards what follows
  std::condition_variable changed_;
  std::optional<std::vector<std::string>> wanted_;  // lines that wait to be read
  std::optional<std::vector<std::string>> done_;    // readings that wait to be taken
  std::string problem_;
  bool dropped_ = false;  // what is being read is no longer wanted
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace vellora::companion
