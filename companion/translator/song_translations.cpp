#include "companion/translator/song_translations.h"

#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "companion/readings/scripts.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// The language of a song where its writing tells it.
std::string languageOf(const Song& song) {
  Scripts scripts;
  for (const SongLine& line : song.lines) scripts |= scriptsOf(line.source);
  if (scripts.kana) return "ja";
  if (scripts.hangul) return "ko";
  return scripts.han ? "zh" : "";
}

std::string replaced(std::string text, const std::string& name, const std::string& value) {
  for (std::size_t at = text.find(name); at != std::string::npos;
       at = text.find(name, at + value.size())) {
    text.replace(at, name.size(), value);
  }
  return text;
}

}  // namespace

std::vector<std::string> commandWords(const std::string& command, const std::string& home) {
  std::vector<std::string> words = CLI::detail::split_up(command);
  std::erase(words, std::string());
  if (!words.empty() && words.front().starts_with("~/")) words.front().replace(0, 1, home);
  return words;
}

SongTranslations::SongTranslations(Translator translator, TranslationCache cache)
    : translator_(std::move(translator)), cache_(std::move(cache)) {}

void SongTranslations::drop() {
  program_.reset();
  lines_.clear();
  translations_.clear();
  where_.clear();
  began_.reset();
  surplus_ = 0;
  notice_.clear();
}

std::vector<std::string> SongTranslations::words(const std::string& from) const {
  std::vector<std::string> result = translator_.words;
  for (std::string& word : result) {
    word = replaced(replaced(word, "{from}", from), "{to}", translator_.manner.to);
  }
  return result;
}

void SongTranslations::begin(Song& song) {
  drop();
  if (!song.open) return;
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < song.lines.size(); ++i) {
    const SongLine& line = song.lines[i];
    if (!line.translation.empty() || !line.hasLetters()) continue;
    const auto [place, isNew] = places.try_emplace(line.source, lines_.size());
    if (isNew) {
      lines_.push_back(line.source);
      where_.emplace_back();
    }
    where_[place->second].push_back(i);
  }
  if (lines_.empty()) return;
  translator_.manner.from = languageOf(song);
  if (const auto kept = cache_.find(translator_.manner, lines_)) {
    for (std::size_t i = 0; i < kept->size(); ++i) fill(song, i, (*kept)[i]);
    return;
  }
  const std::string& from = translator_.manner.from;
  std::error_code failure;
  program_ = LineProgram::start(
      words(from),
      {"VELLORA_SOURCE_LANGUAGE=" + from, "VELLORA_TARGET_LANGUAGE=" + translator_.manner.to},
      lines_, failure);
  if (program_) return;
  const std::string& name = translator_.words.front();
  notice_ = "the translator cannot be started: ";
  notice_ += failure == std::errc::no_such_file_or_directory ? "is " + name + " installed?"
                                                             : name + ": " + failure.message();
}

bool SongTranslations::step(double now, Song& song) {
  if (!program_) return false;
  if (!began_ || *began_ > now) began_ = now;
  bool any = false;
  for (const std::string& line : program_->step()) {
    std::string clean = cleaned(cut(line, longestText));
    if (translations_.size() == lines_.size()) {
      if (!clean.empty()) ++surplus_;
      continue;
    }
    any = true;
    fill(song, translations_.size(), clean);
    translations_.push_back(std::move(clean));
  }
  if (program_->end() != LineProgram::End::running || surplus_ > 0) {
    finish(song);
    return true;
  }
  if (now - *began_ < translator_.patience) return any;
  program_.reset();
  notice_ = "the translator was ended: it had " + counted(translations_.size(), "line") + " of " +
            std::to_string(lines_.size()) + " in the time that it has";
  return any;
}

void SongTranslations::finish(Song& song) {
  const LineProgram::End end = program_->end();
  const std::string reason = program_->reason();
  program_.reset();
  const bool all = translations_.size() == lines_.size();
  if (end == LineProgram::End::tooMuch || surplus_ > 0 || (end == LineProgram::End::well && !all)) {
    takeBack(song);
    const std::string count = surplus_ > 0 || end == LineProgram::End::tooMuch
                                  ? "more"
                                  : "only " + std::to_string(translations_.size());
    notice_ = "the translator's lines are not used: it gave " + count + " for " +
              counted(lines_.size(), "line");
  } else if (end == LineProgram::End::failed) {
    notice_ = "the translator failed (" + reason + ") after " +
              counted(translations_.size(), "line") + " of " + std::to_string(lines_.size());
  } else {
    cache_.keep(translator_.manner, lines_, translations_);
  }
}

// Only lines that the user's own files leave open.
void SongTranslations::fill(Song& song, std::size_t place, const std::string& translation) {
  if (translation.empty()) return;
  for (const std::size_t at : where_[place]) {
    SongLine& line = song.lines[at];
    if (!line.translation.empty()) continue;
    line.translation = translation;
    line.byProgram = true;
  }
}

void SongTranslations::takeBack(Song& song) {
  for (SongLine& line : song.lines) {
    if (!std::exchange(line.byProgram, false)) continue;
    line.translation.clear();
  }
}

}  // namespace vellora::companion
