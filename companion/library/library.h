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

#include "companion/library/folders.h"
#include "companion/library/languages.h"
#include "companion/library/song_files.h"
#include "companion/library/song_names.h"
#include "companion/song/song.h"

namespace vellora::companion {

// A song of a library with its names.
struct LibrarySong {
  SongFiles files;
  SongNames names;
  std::string album;             // as the tags say; may be empty
  std::optional<double> length;  // seconds, where the tags say so

  // Of the files that name it when its names were read; 0 where they are still to be read.
  std::uint64_t version = 0;

  std::size_t folder = 0;  // Folders::Folder::number of the one that it lies in

  // "Title — Artist", as far as both are known.
  std::string label() const;
};

// An audio file of a song.
struct Recording {
  std::string album;             // may be empty
  std::optional<double> length;  // seconds, where it is known
};

// The songs of a folder. Holds their names, and reads a song's lines when they are wanted. What the
// folder holds is looked at piece by piece, so that nobody waits for a large one. One thread.
class Library {
 public:
  // `language`: the language of translations that is preferred, a BCP 47 tag or "".
  Library(std::filesystem::path folder, std::string language);

  // Looks at everything at once. Files that have not changed since are not read again.
  void refresh();

  // Begins a look at everything, from the start. A new library has begun one.
  void beginLook();
  // Whether there is something left to look at.
  bool looking() const { return stage_ != Stage::done && !idle_; }
  // Whether everything was looked at once.
  bool complete() const { return complete_; }
  // Goes on with the look for some milliseconds (where files must be read) or less. `now`:
  // wall-clock seconds since 1970. Whether songs came, went, or have other names.
  bool look(double now);
  // Instead of it, where nothing is left to look at: as little of a look as may be taken every
  // other second without end, the next one where this one stops. What it finds new is left to
  // `look`.
  bool lookIdly(double now);

  const std::vector<LibrarySong>& songs() const { return songs_; }
  // What the last look met with; not what is wrong within the files.
  const std::vector<Problem>& problems() const { return problems_; }

  // How many folders and files were opened so far to know the songs' names.
  struct Work {
    std::size_t folders = 0;
    std::size_t files = 0;
  };
  const Work& work() const { return work_; }

  // The song of that title and artist; nothing where there is none.
  std::optional<std::size_t> find(std::string_view title, std::string_view artist) const;

  // All songs that may be that one, by their places in `songs`, the likeliest first.
  std::vector<std::size_t> findAll(std::string_view title, std::string_view artist) const;

  // An audio file without lyrics that is of that title and artist, and of no other album. Opens the
  // files of that title, eight at most.
  std::optional<Recording> recording(std::string_view title, std::string_view artist,
                                     std::string_view album) const;

  // Reads the song's files, of its translations that in `language`; nothing: the preferred one.
  Song load(const LibrarySong& song, const std::optional<std::string>& language = {}) const;

  // A number that changes when one of the song's files does, or its folder gains or loses a file.
  static std::uint64_t version(const SongFiles& files);

 private:
  enum class Stage { folders, files, audio, done };

  // An audio file that has no lyrics beside it.
  struct Audio {
    std::size_t number = 0;  // the folder's
    const Folders::Folder* folder = nullptr;
    std::string name;
    std::uint64_t version = 0;  // when it was read; 0 where it was not
    bool lyrics = false;        // there are some in it
    std::uint32_t title = 0;    // a hash of its title's comparison key
  };

  // As far as `work` goes; each folder and file that is looked at, and more so each that is read,
  // takes something off it.
  void lookOn(double now, int work);
  // Each returns what it took.
  int lookAtFolder(double now);
  int lookAtSong();
  int lookAtAudio();
  void name(LibrarySong& song);
  void take(const Folders::Folder& folder, bool hadFiles);
  void takeSongs(const Folders::Folder& folder, bool hadFiles);
  void drop(std::size_t folder);
  void dropSongs(std::size_t folder);
  void end();

  Folders folders_;
  std::string language_;
  Languages languages_;
  std::vector<LibrarySong> songs_;
  std::vector<Audio> audio_;
  // What is told of each folder's files, by its number.
  std::map<std::size_t, std::vector<Problem>> told_;
  std::vector<Problem> problems_;
  Work work_;
  Stage stage_ = Stage::folders;
  std::size_t song_ = 0;   // the next to be looked at
  std::size_t sound_ = 0;  // of `audio_`, likewise
  // Other audio files in it than before have lyrics, and its songs are to be taken anew.
  const Folders::Folder* sounding_ = nullptr;
  std::size_t soundingNumber_ = 0;
  bool idle_ = false;
  bool complete_ = false;
  bool filesToo_ = true;  // else those alone whose names are not known yet
  int idleRounds_ = 0;
  bool changed_ = false;  // since `look` returned last
  bool unsorted_ = false;
};

}  // namespace vellora::companion
