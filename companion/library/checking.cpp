#include "companion/library/checking.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "companion/lyrics/audio.h"
#include "companion/lyrics/reading.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/normalization.h"
#include "matching/translation_index.h"

namespace vellora::companion {
namespace {

void tell(const std::vector<Problem>& problems, std::ostream& out) {
  for (const Problem& problem : problems) out << "  " << problem.text() << "\n";
}

// How a table misses a row: the row is cut otherwise than the table's lines.
class TableMisses {
 public:
  TableMisses(const std::filesystem::path& path) : path_(path) {
    for (const FileLine& line : readLyricFile(path, "").lines) {
      keys_.push_back(OverlayMatching::normalized(line.text));
      numbers_.push_back(line.number);
      translated_.push_back(!line.translation.empty());
    }
  }

  std::optional<Problem> explain(const SongLine& row, const std::string& file) const {
    const std::string wanted = OverlayMatching::normalized(row.source);
    for (std::size_t first = 0; first < keys_.size(); ++first) {
      if (keys_[first].empty()) continue;
      if (keys_[first].size() > wanted.size()) {
        if (!keys_[first].starts_with(wanted)) continue;
        return problem(row, file, "the row is only a part of line " + at(first),
                       "a row matches whole lines only: cut the table's line as the row is cut");
      }
      const std::size_t count = runOf(first, wanted);
      if (count > TranslationIndex::longestRun) {
        return problem(row, file,
                       "the row joins " + std::to_string(count) +
                           " lines of the table, from line " + at(first) + " on",
                       "at most " + std::to_string(TranslationIndex::longestRun) +
                           " are joined: put them in fewer lines");
      }
      if (count > 0 && !allTranslated(first, count)) {
        return problem(
            row, file,
            "not all of its lines in the table are translated, from line " + at(first) + " on",
            "a row is matched only by lines that all have a translation");
      }
    }
    return std::nullopt;
  }

 private:
  // How many lines from `first` on say exactly the row; 0 where none do.
  std::size_t runOf(std::size_t first, const std::string& wanted) const {
    std::size_t length = 0;
    for (std::size_t i = first; i < keys_.size(); ++i) {
      if (keys_[i].empty() || wanted.compare(length, keys_[i].size(), keys_[i]) != 0) return 0;
      length += keys_[i].size();
      if (length == wanted.size()) return i - first + 1;
    }
    return 0;
  }
  bool allTranslated(std::size_t first, std::size_t count) const {
    const auto begin = translated_.begin() + static_cast<std::ptrdiff_t>(first);
    return std::all_of(begin, begin + static_cast<std::ptrdiff_t>(count), [](bool b) { return b; });
  }
  std::string at(std::size_t index) const {
    return std::to_string(numbers_[index]) + " of " + path_.filename().string();
  }
  static Problem problem(const SongLine& row, const std::string& file, std::string message,
                         std::string advice) {
    return {Severity::warning, file, row.number,
            inQuotes(row.source) + " never matches: " + message, std::move(advice)};
  }

  std::filesystem::path path_;
  std::vector<std::string> keys_;
  std::vector<int> numbers_;
  std::vector<bool> translated_;
};

// Where it belongs in a file that holds lines and translations.
std::string remedyWithin(const std::string& ending, const SongLine& line) {
  if (ending == ".tsv") return "put it after the tab";
  if (ending == ".po") return "write it in the msgstr after it";
  if (ending == ".srt") return "put it on the next line, in the same block";
  if (ending == ".ttml") {
    return "put it into its <p>, as <span ttm:role=\"x-translation\">…</span>";
  }
  return "put it on the next line" +
         (line.time ? ", as " + stampText(*line.time) + " too" : std::string());
}

// Where a translation that is missing belongs.
std::string remedy(const LibrarySong& from, const SongLine& line) {
  const std::filesystem::path& other = from.files.translation;
  if (isAudio(from.files.lyrics)) {
    return "write it into " + from.files.lyrics.stem().string() + ".LANGUAGE.lrc beside it";
  }
  if (other.empty()) return remedyWithin(readableEnding(from.files.lyrics), line);
  const std::string file = other.filename().string();
  if (isTable(other)) return "add it to " + file;
  if (line.time) return "add it to " + file + " as " + stampText(*line.time);
  return "give it its line in " + file;
}

// Lines of one time, which a player may show as one row.
void findLongRows(const Song& song, std::vector<Problem>& problems) {
  for (std::size_t begin = 0; begin < song.lines.size();) {
    std::size_t end = begin + 1;
    while (end < song.lines.size() && song.lines[begin].time &&
           song.lines[end].time == song.lines[begin].time) {
      ++end;
    }
    if (end - begin > TranslationIndex::longestRun) {
      problems.push_back({Severity::warning, song.name, song.lines[begin].number,
                          counted(end - begin, "line") + " have the time " +
                              stampText(*song.lines[begin].time) +
                              "; shown as one row, they never match",
                          "at most 6 lines are joined: give them times of their own"});
    }
    begin = end;
  }
}

// Whether the line lacks a translation, and no reader has told a mistake of it.
bool lacksTranslation(const Song& song, const SongLine& line) {
  if (!line.translation.empty() || !line.hasLetters()) return false;
  return std::ranges::none_of(song.problems, [&](const Problem& told) {
    return told.line == line.number && told.file == song.name;
  });
}

std::size_t untranslated(const Song& song) {
  return static_cast<std::size_t>(std::ranges::count_if(
      song.lines, [&](const SongLine& line) { return lacksTranslation(song, line); }));
}

}  // namespace

CheckSummary& CheckSummary::operator+=(const CheckSummary& other) {
  songs += other.songs;
  complete += other.complete;
  errors += other.errors;
  warnings += other.warnings;
  return *this;
}

void CheckSummary::count(const std::vector<Problem>& problems) {
  for (const Problem& problem : problems) {
    if (problem.severity == Severity::error) ++errors;
    if (problem.severity == Severity::warning) ++warnings;
  }
}

std::vector<Problem> shortcomings(const LibrarySong& from, const Song& song) {
  std::vector<Problem> problems;
  std::optional<TableMisses> table;
  if (isTable(from.files.translation)) table.emplace(from.files.translation);
  const bool alone = from.files.translation.empty();
  const bool none = alone && song.translated() == 0;
  // What a mistake in reading accounts for is told where the mistake is, and not once more.
  const std::size_t lost = alone ? song.lostLines : song.lostTranslations;
  const bool explained = !song.problems.empty() && untranslated(song) <= lost;
  if (none && !explained && !song.lines.empty()) {
    const std::filesystem::path& file = from.files.lyrics;
    const std::string advice =
        isTable(file) ? std::string("put each after its line")
                      : "put the translation beside it as " + file.stem().string() + ".LANGUAGE" +
                            (isAudio(file) ? ".lrc" : file.extension().string());
    const std::filesystem::path& namesake = from.files.namesake;
    problems.push_back(
        namesake.empty()
            ? Problem{Severity::warning, song.name, 0, "no line has a translation", advice}
            : Problem{Severity::warning, song.name, 0,
                      "taken for a song of its own, not for a translation of " +
                          namesake.filename().string() + ", and no line has a translation",
                      adviceToTranslate(namesake, file) + "; if it is a song, " + advice});
  }
  for (const SongLine& line : song.lines) {
    if (problems.size() == Problems::most) break;
    if (!line.hasLetters()) {
      problems.push_back({Severity::note, song.name, line.number,
                          inQuotes(line.source) + " never matches: a line without letters",
                          "nothing is to be done if it is a mark for music"});
    } else if (!none && !explained && lacksTranslation(song, line)) {
      auto why = table ? table->explain(line, song.name) : std::nullopt;
      problems.push_back(why ? *std::move(why)
                             : Problem{Severity::warning, song.name, line.number,
                                       "no translation of " + inQuotes(line.source),
                                       remedy(from, line)});
    }
  }
  findLongRows(song, problems);
  return problems;
}

std::vector<Problem> problemsOf(const LibrarySong& from, const Song& song) {
  std::vector<Problem> problems = song.problems;
  for (Problem& problem : shortcomings(from, song)) problems.push_back(std::move(problem));
  const auto place = [&](const Problem& problem) {
    return std::pair(problem.file != song.name, problem.line);
  };
  std::ranges::stable_sort(problems,
                           [&](const Problem& a, const Problem& b) { return place(a) < place(b); });
  return problems;
}

CheckSummary summaryOf(const Song& song, const std::vector<Problem>& problems) {
  CheckSummary summary;
  summary.songs = 1;
  if (song.complete()) summary.complete = 1;
  summary.count(problems);
  return summary;
}

CheckSummary checkSong(const LibrarySong& from, const Song& song, std::ostream& out) {
  out << cleaned(from.label()) << ": " << counted(song.lines.size(), "line") << ", "
      << song.translated() << " translated" << (song.complete() ? ": complete" : "") << "\n";
  const std::vector<Problem> problems = problemsOf(from, song);
  tell(problems, out);
  return summaryOf(song, problems);
}

CheckSummary checkLibrary(const Library& library, const CheckProgress& progress,
                          std::ostream& out) {
  CheckSummary sum;
  sum.count(library.problems());
  tell(library.problems(), out);
  for (const LibrarySong& from : library.songs()) {
    if (progress) progress(sum.songs, library.songs().size());
    sum += checkSong(from, library.load(from), out);
  }
  out << counted(sum.songs, "song") << ", " << sum.complete << " complete; "
      << counted(sum.errors, "error") << ", " << counted(sum.warnings, "warning") << "\n";
  return sum;
}

}  // namespace vellora::companion
