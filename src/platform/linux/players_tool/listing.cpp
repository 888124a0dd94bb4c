#include "platform/linux/players_tool/listing.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/browser_windows.h"

namespace vellora {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t widest = 80;  // characters a line, where words allow it

std::string shown(const std::string& text) { return printable(wellFormed(text), 200); }

// "    LABEL  one, two", further lines below the first word.
void writeList(const char* label, const std::vector<std::string>& words, std::ostream& output) {
  const std::string indent(12, ' ');
  std::string line = std::string("    ") + label;
  line.resize(indent.size(), ' ');
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string word = shown(words[i]) + (i + 1 < words.size() ? "," : "");
    if (line.size() > indent.size() && line.size() + 1 + word.size() > widest) {
      output << line << '\n';
      line = indent;
    }
    line += (line.size() > indent.size() ? " " : "") + word;
  }
  output << line << '\n';
}

void describe(const PlayerDescription& description, std::ostream& output) {
  writeList("windows", inShort(description.windowClasses), output);
  if (description.isPage()) writeList("pages", description.documents, output);
  writeList("lyrics", {description.lyrics ? "as described" : "read as they are"}, output);
}

std::string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

}  // namespace

bool listDescriptions(const std::vector<fs::path>& folders, std::ostream& output) {
  const auto files = descriptionFiles(folders);
  const DescriptionList list = readDescriptions(folders);
  for (const PlayerDescriptionPtr& description : list.descriptions) {
    output << shown(description->identifier) << ": " << shown(description->name) << '\n';
    describe(*description, output);
    writeList("file", {description->file}, output);
    for (const DescriptionFile& file : files) {
      if (file.hiddenBy == description->file) writeList("hides", {file.path.string()}, output);
    }
    output << '\n';
  }
  output << counted(list.descriptions.size(), "description", "descriptions") << ", from\n";
  for (const fs::path& folder : folders) {
    std::error_code error;
    output << "    " << shown(folder.string())
           << (fs::is_directory(folder, error) ? "\n" : " (not there)\n");
  }
  if (list.problems.empty()) return true;
  output << "\nNot read:\n";
  for (const DescriptionProblem& problem : list.problems) output << lineOf(problem) << '\n';
  for (const DescriptionFile& file : files) {
    const bool hiderFails = std::ranges::any_of(list.problems, [&file](const auto& problem) {
      return !file.hiddenBy.empty() && problem.file == file.hiddenBy;
    });
    if (hiderFails) {
      output << shown(file.hiddenBy.string()) << " hides " << shown(file.path.string())
             << " nevertheless\n";
    }
  }
  return false;
}

bool checkDescriptions(const std::vector<fs::path>& files, const std::vector<fs::path>& folders,
                       std::ostream& output) {
  bool isClean = true;
  for (const fs::path& file : files) {
    const ReadDescription read = readDescriptionFile(file);
    for (const DescriptionProblem& problem : read.problems) output << lineOf(problem) << '\n';
    if (!read.description) {
      isClean = false;
      continue;
    }
    output << shown(file.string()) << ": no problems: " << shown(read.description->name) << '\n';
    describe(*read.description, output);
    std::error_code error;
    const bool isInFolder = std::ranges::any_of(folders, [&](const fs::path& folder) {
      return fs::equivalent(fs::absolute(file).parent_path(), folder, error);
    });
    if (!folders.empty() && (!isInFolder || file.extension() != ".player")) {
      writeList("put it", {"at " + (folders.front() / file.stem()).string() + ".player"}, output);
    }
  }
  return isClean;
}

}  // namespace vellora
