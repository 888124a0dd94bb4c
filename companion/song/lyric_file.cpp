#include "companion/song/lyric_file.h"

#include <algorithm>
#include <utility>

#include "companion/song/text.h"

namespace vellora::companion {

bool hasRoom(LyricFile& file, Problems& problems, int number) {
  if (file.lines.size() < mostLines) return true;
  ++file.lost;
  problems.fail(number,
                std::string(file.isTable ? "the table" : "the file") + " has more than " +
                    std::to_string(mostLines) + " lines",
                "the rest is left out; is this one song?");
  return false;
}

bool isInstrumental(const LyricFile& file) {
  const auto tag = file.tags.find("au");
  return tag != file.tags.end() && lowerCase(tag->second) == "instrumental";
}

LyricFile finished(LyricFile file, Problems problems, std::string form) {
  const bool any =
      std::ranges::any_of(file.lines, [](const FileLine& line) { return !line.text.empty(); });
  if (!any && file.lost == 0 && !isInstrumental(file))
    problems.fail(0, "no lines", std::move(form));
  if (file.timed()) {
    std::ranges::stable_sort(
        file.lines, [](const FileLine& a, const FileLine& b) { return *a.time < *b.time; });
  }
  file.problems = std::move(problems).take();
  return file;
}

}  // namespace vellora::companion
