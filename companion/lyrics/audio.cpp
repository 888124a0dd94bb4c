#include "companion/lyrics/audio.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "companion/lyrics/language_lookup.h"
#include "companion/lyrics/tags.h"
#include "companion/song/song.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

bool sameLanguage(const std::string& a, const std::string& b) {
  return a == b || (!a.empty() && !b.empty() && remoteness(a, b) < anotherLanguage);
}

// The same lyrics in two places, as programs write them for players that know one of these alone.
bool sameText(const LyricFile& a, const LyricFile& b) {
  const auto textsOf = [](const LyricFile& file) {
    std::vector<std::string> texts;
    for (const FileLine& line : file.lines) {
      if (!line.text.empty()) texts.push_back(line.text);
    }
    return texts;
  };
  return textsOf(a) == textsOf(b);
}

using Lyrics = std::vector<TagLyrics>;

// Which of them are the lyrics, before times are looked at.
const TagLyrics& sung(const AudioTags& tags, const std::string& wanted) {
  const Lyrics& all = tags.lyrics;
  const auto first = [&](const auto& is) {
    return std::ranges::find_if(all,
                                [&](const TagLyrics& one) { return !one.translation && is(one); });
  };
  auto found = all.end();
  if (!tags.language.empty()) {
    found = first([&](const TagLyrics& one) { return sameLanguage(one.language, tags.language); });
  }
  if (found == all.end() && !wanted.empty()) {
    found = first([&](const TagLyrics& one) { return !sameLanguage(one.language, wanted); });
  }
  if (found == all.end()) found = first([](const TagLyrics&) { return true; });
  return found == all.end() ? all.front() : *found;
}

// Of those that say the same, or are of the same language, one with times.
const TagLyrics& timed(const Lyrics& all, const TagLyrics& like) {
  if (like.file.timed()) return like;
  const auto better = std::ranges::find_if(all, [&](const TagLyrics& other) {
    const bool same =
        sameLanguage(other.language, like.language) || sameText(other.file, like.file);
    return other.translation == like.translation && other.file.timed() && same;
  });
  return better == all.end() ? like : *better;
}

const TagLyrics* translationOf(const Lyrics& all, const TagLyrics& lyrics,
                               const std::string& wanted) {
  const TagLyrics* best = nullptr;
  for (const TagLyrics& other : all) {
    const bool another = other.translation || (!other.language.empty() &&
                                               !sameLanguage(other.language, lyrics.language));
    if (&other == &lyrics || !another || sameText(other.file, lyrics.file)) continue;
    if (best == nullptr ||
        remoteness(other.language, wanted) < remoteness(best->language, wanted)) {
      best = &other;
    }
  }
  return best == nullptr ? nullptr : &timed(all, *best);
}

// The lines of both, as those of one file.
LyricFile joined(const TagLyrics& lyrics, const TagLyrics& translation) {
  LyricFile file;
  Song song = assemble(lyrics.file, translation.file);
  for (SongLine& line : song.lines) {
    file.lines.push_back(
        {line.time, std::move(line.source), std::move(line.translation), line.number});
  }
  file.problems = std::move(song.problems);
  file.lost = song.lostLines;
  return file;
}

}  // namespace

bool isAudio(const std::filesystem::path& path) {
  return std::ranges::find(audioEndings, lowerCase(path.extension().string())) !=
         audioEndings.end();
}

LyricFile readAudio(const std::filesystem::path& name, std::istream& bytes,
                    std::string_view wantedLanguage) {
  Problems problems(name.string());
  AudioTags tags = readTags(name.string(), lowerCase(name.extension().string()), bytes, problems);
  const std::string wanted(wantedLanguage);
  LyricFile file;
  if (!tags.lyrics.empty()) {
    const TagLyrics& lyrics = timed(tags.lyrics, sung(tags, wanted));
    const TagLyrics* const translation = translationOf(tags.lyrics, lyrics, wanted);
    file = translation == nullptr ? lyrics.file : joined(lyrics, *translation);
    for (const TagLyrics& other : tags.lyrics) {
      const bool said = !other.language.empty() && !sameText(other.file, lyrics.file);
      if (said && !sameLanguage(other.language, lyrics.language)) {
        file.languages.insert(other.language);
      }
    }
  }
  file.name = name.string();
  std::map<std::string, std::string> within = std::exchange(file.tags, std::move(tags.tags));
  file.tags.merge(within);  // LRC within a text may have tags of its own
  std::vector<Problem> told = std::move(problems).take();
  file.problems.insert(file.problems.end(), std::make_move_iterator(told.begin()),
                       std::make_move_iterator(told.end()));
  return file;
}

std::map<std::string, std::string> readRecordingTags(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  std::ifstream bytes(path, std::ios::binary);
  Problems problems(path.string());
  return readTags(path.string(), lowerCase(path.extension().string()), bytes, problems,
                  AudioParts::tagsAndLength)
      .tags;
}

}  // namespace vellora::companion
