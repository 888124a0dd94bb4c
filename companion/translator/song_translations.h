#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companion/song/song_addition.h"
#include "companion/translator/line_program.h"
#include "companion/translator/translation_cache.h"

namespace vellora::companion {

// The words of a command, taken apart at blanks but within quotes, by no shell; "~/" at the
// beginning of the first is the home folder `home`.
std::vector<std::string> commandWords(const std::string& command, const std::string& home);

// How a program translates.
struct Translator {
  std::vector<std::string> words;  // "{from}" and "{to}" in them stand for the languages
  TranslationManner manner;        // its `from` is found for each song
  double patience = 60;            // seconds for a song
};

// Fills the lines of a song that have no translation with those of a program: it gets them on its
// standard input, each text once, and gives as many lines back on its standard output. A line
// appears when it has come. A program that ends well with another number of lines has shifted them,
// so all its lines are taken back; where it fails or is killed after `patience`, those that have
// come stay. Each is told in `notice`, and tried anew when the song begins the next time. Main
// thread.
class SongTranslations final : public SongAddition {
 public:
  SongTranslations(Translator translator, TranslationCache cache);

  void begin(Song& song) override;
  void drop() override;
  bool step(double now, Song& song) override;
  bool underWay() const override { return program_ != nullptr; }
  std::string notice() const override { return notice_; }

 private:
  std::vector<std::string> words(const std::string& from) const;
  void fill(Song& song, std::size_t line, const std::string& translation);
  void takeBack(Song& song);
  void finish(Song& song);

  Translator translator_;
  TranslationCache cache_;
  std::vector<std::string> lines_;  // that are being translated
  std::vector<std::string> translations_;
  std::vector<std::vector<std::size_t>> where_;  // each of them stands in the song
  std::unique_ptr<LineProgram> program_;
  std::optional<double> began_;
  std::size_t surplus_ = 0;  // lines beyond those that were wanted
  std::string notice_;
};

}  // namespace vellora::companion
