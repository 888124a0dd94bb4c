#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace vellora::companion {

// By how much later than their times say the lyrics of the song that plays are sung, in
// milliseconds; kept for each song in a small file, which is read when a song begins. Songs are the
// same whose titles and artists are but for their spelling. A damaged file counts as none. One
// thread.
class LyricShift {
 public:
  static constexpr int farthest = 60'000;  // milliseconds, either way
  static constexpr std::size_t mostSongs = 1000;

  // `file`: where it is empty, nothing is kept. `most`: of the songs in it, beyond which those go
  // that were changed in the longest time.
  explicit LyricShift(std::filesystem::path file, std::size_t most = mostSongs);

  // That song plays from now on; the empty title stands for none. What was changed of another is
  // kept first. The same texts again change nothing.
  void play(const std::string& title, const std::string& artist);

  int milliseconds() const { return now_.milliseconds; }
  // Later by that, or earlier where it is negative, within `farthest`. Does nothing without a song.
  void change(int milliseconds);

  bool changed() const { return changed_; }
  // Writes what has changed; makes the file's folder where it is missing. Whether it is kept.
  bool keep();

 private:
  struct Kept {
    std::string title;
    std::string artist;
    int milliseconds = 0;
  };
  // In the order in which they were changed.
  std::vector<Kept> read() const;

  std::filesystem::path file_;
  std::size_t most_;
  Kept now_;
  bool changed_ = false;
};

}  // namespace vellora::companion
