#include <string>
#include <utility>

#include "companion/lyrics/table.h"
#include "companion/song/text.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

}  // namespace

LyricFile readTsv(std::string_view name, std::string_view text) {
  LyricFile file;
  file.name = name;
  file.isTable = true;
  Problems problems(name);
  forEachLine(text, [&](int number, std::string_view raw) {
    const std::string_view line = cut(raw, 4 * longestText);
    if (trimmed(line).empty() || line.front() == '#') return true;
    if (!hasRoom(file, problems, number)) return false;
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) {
      problems.warn(number, "no tab in " + inQuotes(line),
                    "put one between the line and its translation");
    }
    const std::string_view rest =
        tab == std::string_view::npos ? std::string_view() : line.substr(tab + 1);
    std::string source = cleaned(cut(line.substr(0, tab), longestText));
    if (source.empty()) {
      ++file.lost;
      problems.warn(number, "nothing before the tab", "put the line there that is translated");
      return true;
    }
    file.lines.push_back({std::nullopt, std::move(source),
                          cleaned(cut(rest.substr(0, rest.find('\t')), longestText)), number});
    return true;
  });
  return finished(std::move(file), std::move(problems),
                  "a line of the table is the source, a tab and the translation");
}

}  // namespace vellora::companion
