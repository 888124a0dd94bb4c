#include <algorithm>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <utility>

#include "base/environment.h"
#include "base/files.h"
#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

namespace fs = std::filesystem;

namespace {

// From the folder of the programs to that of the descriptions, built or installed.
constexpr const char* playersFromProgram = VELLORA_PLAYERS_FROM_PROGRAM;

DescriptionProblem problemOf(const fs::path& file, std::string text, std::string remedy) {
  return {.file = file.string(), .line = 0, .text = std::move(text), .remedy = std::move(remedy)};
}

DescriptionProblem unreadable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found) {
    return problemOf(file, "no such file", "look at the name, or take the link away");
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return problemOf(file,
                     fs::is_directory(status) ? "a folder, not a file" : "not an ordinary file",
                     "write the description as a text file");
  }
  return problemOf(file, "cannot be read", "look at its permissions and its size");
}

// The files of a folder by name. Those of an editor that begin with a dot are no descriptions.
std::vector<fs::path> filesOf(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path name = entry->path().filename();
    if (name.extension() == ".player" && name.native().front() != '.') files.push_back(*entry);
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

std::string lineOf(const DescriptionProblem& problem) {
  constexpr int longest = 1000;  // characters
  const std::string line = problem.line > 0 ? ':' + std::to_string(problem.line) : std::string();
  return printable(wellFormed(problem.file) + line + ": " + problem.text + "; " + problem.remedy,
                   longest);
}

ReadDescription readDescriptionFile(const fs::path& file) {
  if (const auto text = readWholeFile(file)) return readDescription(*text, file.string());
  return {.description = nullptr, .problems = {unreadable(file)}};
}

std::vector<DescriptionFile> descriptionFiles(const std::vector<fs::path>& folders) {
  std::vector<DescriptionFile> files;
  for (const fs::path& folder : folders) {
    const std::size_t ofEarlierFolders = files.size();
    for (fs::path& path : filesOf(folder)) {
      const auto end = files.begin() + static_cast<std::ptrdiff_t>(ofEarlierFolders);
      const auto hiding = std::find_if(files.begin(), end, [&path](const DescriptionFile& file) {
        return file.path.filename() == path.filename();
      });
      files.push_back(
          {.path = std::move(path), .hiddenBy = hiding == end ? fs::path() : hiding->path});
    }
  }
  return files;
}

DescriptionList readDescriptions(const std::vector<fs::path>& folders) {
  DescriptionList list;
  for (const DescriptionFile& file : descriptionFiles(folders)) {
    if (!file.hiddenBy.empty()) continue;
    ReadDescription read = readDescriptionFile(file.path);
    if (read.description) list.descriptions.push_back(std::move(read.description));
    std::ranges::move(read.problems, std::back_inserter(list.problems));
  }
  return list;
}

std::vector<fs::path> descriptionFolders() {
  std::vector<fs::path> folders;
  if (const auto data = environmentFolder("XDG_DATA_HOME")) {
    folders.push_back(*data / "vellora" / "players");
  } else if (const auto home = environmentFolder("HOME")) {
    folders.push_back(*home / ".local" / "share" / "vellora" / "players");
  }
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (!error) {
    folders.push_back((program.parent_path() / playersFromProgram).lexically_normal());
  }
  return folders;
}

}  // namespace vellora
