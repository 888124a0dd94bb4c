#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "companion/exchange/keeper.h"

namespace vellora::companion {
namespace {

// The place after or before `at`, round and round.
std::size_t moved(std::size_t at, int by, std::size_t count) {
  return by < 0 ? (at + count - 1) % count : (at + 1) % count;
}

std::string placeOf(std::size_t place, std::size_t count) {
  return std::to_string(place + 1) + " of " + std::to_string(count);
}

}  // namespace

Keeper::Choice Keeper::choice() const {
  if (!track_) return {};
  const auto found = choices_.find({track_->title, track_->artist});
  return found == choices_.end() ? Choice() : found->second;
}

void Keeper::choose(Choice choice) {
  choices_[{track_->title, track_->artist}] = std::move(choice);
  if (elsewhere_) elsewhere_->want(std::nullopt);
  playing_.reset();
  unsearched_ = true;
  search_.hasten();
}

bool Keeper::choosesElsewhere() const {
  const auto lyrics = choice().lyrics;
  return elsewhere_ && lyrics && lyrics->empty();
}

// The song that was chosen for the track as long as it is there, else the likeliest.
std::optional<std::size_t> Keeper::find() const {
  if (choosesElsewhere()) return std::nullopt;
  const auto lyrics = choice().lyrics;
  if (lyrics) {
    for (const std::size_t place : library_.findAll(track_->title, track_->artist)) {
      if (library_.songs()[place].files.lyrics == *lyrics) return place;
    }
  }
  return library_.find(track_->title, track_->artist);
}

std::string Keeper::chooseLyrics(int by) {
  if (!track_) return {};
  std::vector<std::filesystem::path> all;
  for (const std::size_t place : library_.findAll(track_->title, track_->artist)) {
    all.push_back(library_.songs()[place].files.lyrics);
  }
  if (elsewhere_) all.emplace_back();
  const auto now = playing_ ? playing_->from.files.lyrics : std::filesystem::path();
  const auto at = static_cast<std::size_t>(std::ranges::find(all, now) - all.begin());
  const bool onlyThis = all.size() == 1 && at == 0;
  if (all.empty() || onlyThis) return "there are no other lyrics of this song";
  const std::size_t next = at == all.size() ? 0 : moved(at, by, all.size());
  Choice choice = this->choice();
  choice.lyrics = all[next];
  choose(std::move(choice));
  const std::string name =
      all[next].empty() ? std::string("the lyrics service") : all[next].filename().string();
  return "lyrics " + placeOf(next, all.size()) + ": " + name;
}

std::string Keeper::chooseTranslation(int by) {
  if (!playing_) return {};
  const Song& song = playing_->song;
  Choice choice = this->choice();
  std::vector<std::string> languages = song.languages;
  const bool any = std::ranges::any_of(
      song.lines, [](const SongLine& line) { return !line.translation.empty(); });
  if (languages.empty() && (any || choice.original)) languages.emplace_back();
  if (languages.empty()) return "there is no translation of this song";
  const std::size_t original = languages.size();
  const auto used = std::ranges::find(languages, song.language);
  const auto at = choice.original ? original : static_cast<std::size_t>(used - languages.begin());
  const std::size_t next = moved(at, by, original + 1);
  const std::string place = "translation " + placeOf(next, original + 1) + ": ";
  choice.original = next == original;
  if (choice.original) {
    choose(std::move(choice));
    return place + "none, the original alone";
  }
  const std::string& language = languages[next];
  if (!song.languages.empty()) choice.language = language;
  if (!language.empty()) chosenLanguage_ = language;
  std::string said = place + (language.empty() ? "that of the files" : language);
  choose(std::move(choice));
  return said;
}

}  // namespace vellora::companion
