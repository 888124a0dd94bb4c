#include "companion/lyrics/plain.h"

#include <string>
#include <utility>

#include "companion/song/text.h"

namespace vellora::companion {

LyricFile readPlain(std::string_view name, std::string_view text) {
  LyricFile file;
  file.name = name;
  Problems problems(name);
  forEachLine(text, [&](int number, std::string_view line) {
    if (!hasRoom(file, problems, number)) return false;
    if (line.size() > longestText) {
      problems.warn(number, "the line is longer than " + std::to_string(longestText) + " bytes",
                    "it is cut there; put each sung line on a line of its own");
    }
    file.lines.push_back({std::nullopt, cleaned(cut(line, longestText)), {}, number});
    return true;
  });
  return finished(std::move(file), std::move(problems),
                  "each sung line stands on a line of its own");
}

}  // namespace vellora::companion
