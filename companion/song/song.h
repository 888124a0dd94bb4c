#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "companion/song/lyric_file.h"
#include "exchange/records/records.h"

namespace vellora::companion {

// A line of a song with its translation.
struct SongLine {
  std::optional<double> time;  // seconds since the song's beginning
  std::string source;
  std::string translation;  // empty where there is none
  int number = 0;           // its line in the file of the lyrics, from 1
  std::string reading;      // the source in Latin letters; empty where there is none
  bool byProgram = false;   // a program has made the translation, not the user's files

  // Whether a player's row can be matched with it at all: a text of signs alone never is.
  bool hasLetters() const;
};

// Where a line's reading stands in its caption.
enum class ReadingPlace {
  above,  // on a line of its own above the translation
  alone   // in the translation's place; a line without a reading keeps its translation
};

// What the caption of a line says; empty where it gets none.
std::string captionText(const SongLine& line, ReadingPlace place);

// Most bytes of lines in a snapshot: it is written every other second and read more often.
inline constexpr std::size_t largestSnapshot = std::size_t{2} * 1024 * 1024;

// A song put together from its files.
struct Song {
  std::string name;             // its file of lyrics
  std::vector<SongLine> lines;  // in order; pauses and blank lines are left out
  std::vector<Problem> problems;
  // What the readers had to leave out (see LyricFile::lost) of its lyrics and of the translation
  // beside them.
  std::size_t lostLines = 0;
  std::size_t lostTranslations = 0;
  // Languages of its translations, among which can be chosen, in order; empty where none is named.
  std::vector<std::string> languages{};
  std::string language{};        // of the one that its lines have; may be empty
  bool open = true;              // a program may translate what the files leave open
  bool instrumental = false;     // there is nothing to sing, as its file says
  std::optional<double> length;  // seconds, where the file's tag "length" says so

  // Takes the translations out.
  void leaveOriginal();
  // How many lines the user's files translate.
  std::size_t translated() const;
  // When the last line begins, in seconds; 0 for untimed songs.
  double lastTime() const;
  // No line of its lyrics was lost in reading, every line that has letters has a translation, and
  // there is such a line, or the song is an instrumental.
  bool complete() const;
  // The line that is sung at `position` seconds; nothing before the first, and in untimed songs.
  std::optional<std::size_t> lineAt(double position) const;
  // The lines as a snapshot carries them, as many as `largestSnapshot` allows. Lines without
  // letters, which match nothing, are left out.
  std::vector<OverlayLine> overlayLines(ReadingPlace place = ReadingPlace::above) const;
};

// Puts a song together. Without a translation file, `lyrics` may hold its own translation: in the
// lines themselves, or as a second line of the same time where at least half of the times have one.
// A translation with times is matched by time, one without by its place, a table by the text.
Song assemble(LyricFile lyrics, std::optional<LyricFile> translation);

}  // namespace vellora::companion
