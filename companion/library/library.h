#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/library/song_files.h"
#include "companion/library/song_names.h"
#include "companion/song/song.h"

namespace vellora::companion {

// A song of a library with its names.
struct LibrarySong {
  SongFiles files;
  SongNames names;

  // "Title — Artist", as far as both are known.
  std::string label() const;
};

// The songs of a folder. Holds their names, and reads a song's lines when they are wanted. One
// thread.
class Library {
 public:
  // `language`: the language of translations that is preferred, a BCP 47 tag or "".
  Library(std::filesystem::path folder, std::string language);

  // Searches the folder anew. Files that have not changed since are not read again.
  void refresh();

  const std::vector<LibrarySong>& songs() const { return songs_; }
  // What the last search met with; not what is wrong within the files.
  const std::vector<Problem>& problems() const { return problems_; }

  // The song of that title and artist; nothing where there is none.
  std::optional<std::size_t> find(std::string_view title, std::string_view artist) const;

  // Reads the song's files.
  Song load(const LibrarySong& song) const;

  // A number that changes when one of the song's files does, or its folder gains or loses a file.
  static std::uint64_t version(const SongFiles& files);

 private:
  struct Known {
    std::uint64_t version = 0;
    SongNames names;
  };

  std::filesystem::path folder_;
  std::string language_;
  std::vector<LibrarySong> songs_;
  std::vector<Problem> problems_;
  std::map<std::filesystem::path, Known> known_;
};

}  // namespace vellora::companion
