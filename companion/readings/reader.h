#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/readings/alphabets.h"
#include "companion/readings/chinese.h"
#include "companion/readings/japanese.h"

namespace vellora::companion {

// Which lines get a reading in Latin letters, and which reading.
enum class ReadingKind {
  none,
  pinyin,    // lines with Han characters and no kana, as Chinese
  romaji,    // lines with kana or Han characters, as Japanese
  romaja,    // lines with Hangul
  latin,     // lines in other scripts than these
  automatic  // all of them; Han characters are Japanese where the song has kana, else Chinese
};

// "pinyin", "romaji", "romaja", "latin", "auto" or "none".
std::optional<ReadingKind> readingKindOf(std::string_view name);

// Writes lines of a song in Latin letters. Not for two threads at once; what is needed for a script
// is loaded when it first occurs.
class Reader {
 public:
  // `dictionary`: see Japanese::with.
  explicit Reader(ReadingKind kind, std::string dictionary = {});

  // A reading for each line of a song, empty where a line gets none: it is in Latin letters
  // already, or of a kind that is not wanted, or nobody knows its reading. Asks before each line
  // whether to go on, and stops where not.
  std::vector<std::string> read(const std::vector<std::string>& lines,
                                const std::function<bool()>& goOn);

  // Why lines of the song that was read last got none, for people; empty where nothing is missing.
  const std::string& problem() const { return problem_; }

 private:
  enum class Manner { none, chinese, japanese, korean, other };

  Manner mannerOf(std::string_view line, bool songHasKana) const;
  std::string romaji(std::string_view line);

  ReadingKind kind_;
  std::string dictionary_;
  Chinese chinese_;
  Alphabets alphabets_;
  std::optional<std::unique_ptr<Japanese>> japanese_;  // once it was looked for
  std::string problem_;
};

}  // namespace vellora::companion
