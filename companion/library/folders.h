#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "companion/song/problem.h"

namespace vellora::companion {

// Bounds of a search.
inline constexpr int deepestFolder = 8;
inline constexpr std::size_t mostFiles = 50'000;
inline constexpr std::size_t mostAudioFiles = 200'000;
inline constexpr std::size_t mostFolders = 50'000;

// The folders within one (symbolic links to folders are not followed) and the names of the files in
// them that can be read. A folder is read again once its time of modification is another. One
// thread.
class Folders {
 public:
  struct Folder {
    std::size_t number = 0;  // no other folder has it
    std::filesystem::path path;
    // Its name and those of the folders that it lies in, up to the one that was searched.
    std::vector<std::string> names;
    std::vector<std::string> files;  // in order
    std::vector<std::string> audio;  // names of audio files, in order
    std::optional<Problem> problem;  // why it could not be read
  };

  explicit Folders(const std::filesystem::path& root);

  // The next call of `next` looks at the first folder.
  void begin() { at_.clear(); }

  struct Look {
    const Folder* folder = nullptr;  // null at the end of a round
    bool read = false;               // otherwise its time alone was looked at
    bool changed = false;            // it has other files
    bool hadFiles = false;           // before
  };
  // Looks at the next folder. `now`: wall-clock seconds since 1970; a folder that changed less than
  // three seconds before may change once more without another time, and is read again.
  Look next(double now);

  // The numbers of the folders with files that have gone since the last call.
  std::vector<std::size_t> takeGone();

  // What could not be read, and what is left out for the bounds' sake.
  std::vector<Problem> problems() const;

 private:
  struct Known {
    Folder folder;
    std::vector<std::string> inner;       // names of the folders in it, in order
    std::optional<std::int64_t> settled;  // the time since which it is as it was read
  };
  using ByPath = std::map<std::string, Known>;

  Look look(Known& known, std::optional<std::int64_t> time, double now);
  void read(Known& known);
  void addFile(std::vector<std::string>& to, const std::string& name, std::size_t& count,
               std::size_t most);
  void add(const Known& outer, const std::string& name);
  void remove(const std::string& path);

  std::string root_;
  ByPath folders_;
  std::string at_;  // the folder that was looked at last
  std::vector<std::size_t> gone_;
  std::size_t number_ = 0;
  std::size_t files_ = 0;
  std::size_t audio_ = 0;
  bool tooMany_ = false;
};

}  // namespace vellora::companion
