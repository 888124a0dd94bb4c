#include "companion/library/importing.h"

#include <ostream>
#include <set>
#include <string>

#include "base/files.h"
#include "companion/library/languages.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

void addTag(std::string& text, const char* key, const std::string& value) {
  if (!value.empty()) text.append("[").append(key).append(":").append(value).append("]\n");
}

// The language that the translation's file name gives, as a tag, or the word for it.
std::string suffixOf(const LibrarySong& from) {
  const std::string stem = from.files.translation.stem().string();
  const std::size_t dot = stem.rfind('.');
  const std::string word = dot == std::string::npos ? std::string() : stem.substr(dot + 1);
  return "." + Languages().meantBy(word).value_or("translation");
}

bool put(const fs::path& path, const std::string& text, ImportSummary& summary, std::ostream& out) {
  if (!writeFileAtomically(path, text)) {
    out << "  " << cleaned(path.string()) << ": error: cannot be written; is the folder yours, and "
        << "is there room?\n";
    summary.failed = true;
    return false;
  }
  ++summary.written;
  out << "  written: " << cleaned(path.string()) << "\n";
  return true;
}

// The name, or where a song before has it the name with a number. File systems that ignore letter
// case are as many as others.
std::string freeName(const std::string& name, std::set<std::string>& taken) {
  std::string free = name;
  for (int number = 2; !taken.insert(lowerCase(free)).second; ++number) {
    free = name + " (" + std::to_string(number) + ")";
  }
  return free;
}

void write(const LibrarySong& from, const ImportedFiles& files, const std::string& name,
           const fs::path& to, bool replace, ImportSummary& summary, std::ostream& out) {
  const fs::path lyrics = to / (name + files.ending);
  const fs::path translation = to / (name + suffixOf(from) + files.ending);
  if (!replace && (fileExists(lyrics) || (!files.translation.empty() && fileExists(translation)))) {
    ++summary.kept;
    out << "  " << cleaned(lyrics.string()) << " is there already and stays; --force replaces it\n";
    return;
  }
  if (!put(lyrics, files.lyrics, summary, out)) return;
  if (!files.translation.empty()) put(translation, files.translation, summary, out);
}

}  // namespace

std::string fileNameOf(const LibrarySong& from) {
  const SongNames& names = from.names;
  std::string name = names.artist.empty() ? names.title : names.artist + " - " + names.title;
  if (name.empty()) name = from.files.stem;
  for (char& c : name) {
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
  }
  name = cleaned(cut(name, 180));
  return name.empty() || name.front() == '.' ? "_" + name : name;
}

ImportedFiles filesOf(const LibrarySong& from, const Song& song) {
  ImportedFiles files;
  const bool timed = !song.lines.empty() && song.lines.front().time.has_value();
  if (!timed) {
    files.ending = ".tsv";
    for (const SongLine& line : song.lines) {
      files.lyrics.append(line.source).append("\t").append(line.translation).append("\n");
    }
    return files;
  }
  addTag(files.lyrics, "ti", from.names.title);
  addTag(files.lyrics, "ar", from.names.artist);
  for (const SongLine& line : song.lines) {
    const std::string stamp = stampText(*line.time);
    files.lyrics.append(stamp).append(line.source).append("\n");
    if (!line.translation.empty()) {
      files.translation.append(stamp).append(line.translation).append("\n");
    }
  }
  return files;
}

ImportSummary importSongs(const Library& library, const fs::path& to, bool replace,
                          const CheckProgress& progress, std::ostream& out) {
  ImportSummary summary;
  std::set<std::string> taken;
  for (const Problem& problem : library.problems()) out << problem.text() << "\n";
  for (const LibrarySong& from : library.songs()) {
    if (progress) progress(summary.check.songs, library.songs().size());
    const Song song = library.load(from);
    summary.check += checkSong(from, song, out);
    if (song.lines.empty()) continue;
    const ImportedFiles files = filesOf(from, song);
    write(from, files, freeName(fileNameOf(from), taken), to, replace, summary, out);
  }
  out << counted(summary.check.songs, "song") << " read, " << counted(summary.written, "file")
      << " written, " << counted(summary.kept, "song") << " left as before\n";
  return summary;
}

}  // namespace vellora::companion
