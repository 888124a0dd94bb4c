#include "companion/song/stanzas.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "companion/song/text.h"

namespace vellora::companion {
namespace {

using Places = std::vector<std::size_t>;  // of lines, in order

// Lines whose numbers follow each other stand in one stanza.
template <typename NumberAt>
std::vector<Places> stanzas(const Places& lines, NumberAt numberAt) {
  std::vector<Places> result;
  for (const std::size_t line : lines) {
    const bool follows = !result.empty() && numberAt(line) == numberAt(result.back().back()) + 1;
    if (!follows) result.emplace_back();
    result.back().push_back(line);
  }
  return result;
}

}  // namespace

void pairByPlace(Song& song, const LyricFile& translation, Problems& problems) {
  Places sung(song.lines.size());
  for (std::size_t i = 0; i < sung.size(); ++i) sung[i] = i;
  Places given;
  for (std::size_t i = 0; i < translation.lines.size(); ++i) {
    if (!translation.lines[i].text.empty()) given.push_back(i);
  }
  const auto match = [&](const Places& a, const Places& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
      song.lines[a[i]].translation = translation.lines[b[i]].text;
    }
  };
  if (sung.size() == given.size()) return match(sung, given);
  if (given.empty()) return;

  const auto sungStanzas = stanzas(sung, [&](std::size_t i) { return song.lines[i].number; });
  const auto givenStanzas =
      stanzas(given, [&](std::size_t i) { return translation.lines[i].number; });
  const bool sameCount = sungStanzas.size() == givenStanzas.size();
  for (std::size_t i = 0; i < std::min(sungStanzas.size(), givenStanzas.size()); ++i) {
    if (sungStanzas[i].size() == givenStanzas[i].size()) {
      match(sungStanzas[i], givenStanzas[i]);
      continue;
    }
    problems.warn(translation.lines[givenStanzas[i].front()].number,
                  counted(givenStanzas[i].size(), "line") + " where the lyrics have " +
                      std::to_string(sungStanzas[i].size()) + ", from their line " +
                      std::to_string(song.lines[sungStanzas[i].front()].number) + " on",
                  "give each line of the lyrics a line of its own here");
    if (!sameCount) return;  // what follows may be shifted
  }
  if (sameCount) return;
  problems.warn(0,
                counted(given.size(), "line") + " in " + std::to_string(givenStanzas.size()) +
                    " stanzas where the lyrics have " + std::to_string(sung.size()) + " in " +
                    std::to_string(sungStanzas.size()),
                "part the stanzas with a blank line, as the lyrics do");
}

}  // namespace vellora::companion
