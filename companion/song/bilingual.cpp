#include "companion/song/bilingual.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "companion/song/script.h"
#include "companion/song/time_stamp.h"

namespace vellora::companion {
namespace {

constexpr double roundingError = 0.0005;  // seconds
constexpr double nearTime = 0.05;         // seconds

using Group = std::vector<const FileLine*>;

// The lines of each time, those without text left out.
std::vector<Group> byTime(const LyricFile& file, double tolerance) {
  std::vector<Group> groups;
  for (std::size_t begin = 0; begin < file.lines.size();) {
    const double time = *file.lines[begin].time;
    Group group;
    for (; begin < file.lines.size() && *file.lines[begin].time - time < tolerance; ++begin) {
      if (!file.lines[begin].text.empty()) group.push_back(&file.lines[begin]);
    }
    if (!group.empty()) groups.push_back(std::move(group));
  }
  return groups;
}

bool mostlyDoubled(const std::vector<Group>& groups) {
  const auto doubled =
      std::ranges::count_if(groups, [](const Group& group) { return group.size() >= 2; });
  return doubled > 0 && static_cast<std::size_t>(doubled) * 2 >= groups.size();
}

// The groups of such a file; none for another.
std::vector<Group> groupsOf(const LyricFile& file) {
  if (!file.timed()) return {};
  for (const double tolerance : {roundingError, nearTime + roundingError}) {
    std::vector<Group> groups = byTime(file, tolerance);
    if (mostlyDoubled(groups)) return groups;
  }
  return {};
}

// The first line stands alone and so does the last, in another script; between them each pair has
// the other's script first.
bool translatesLineBefore(const std::vector<Group>& groups) {
  if (groups.size() < 4 || groups.front().size() != 1 || groups.back().size() != 1) return false;
  const Script sung = scriptOf(groups.front().front()->text);
  const auto another = [&](const FileLine& line) {
    const Script script = scriptOf(line.text);
    return script != sung && script != Script::none;
  };
  if (sung == Script::none || !another(*groups.back().front())) return false;
  std::size_t pairs = 0;
  std::size_t crossed = 0;
  for (const Group& group : groups) {
    if (group.size() < 2) continue;
    ++pairs;
    if (another(*group.front()) && !another(*group.back())) ++crossed;
  }
  return crossed * 4 >= pairs * 3;
}

// Each line of another script than the first's goes to the line before.
std::vector<SongLine> givenBack(const std::vector<Group>& groups) {
  std::vector<SongLine> lines;
  const Script sung = scriptOf(groups.front().front()->text);
  for (const Group& group : groups) {
    for (const FileLine* line : group) {
      const Script script = scriptOf(line->text);
      if (script != sung && script != Script::none && lines.back().translation.empty()) {
        lines.back().translation = line->text;
      } else {
        lines.push_back({line->time, line->text, {}, line->number, {}});
      }
    }
  }
  return lines;
}

}  // namespace

bool isBilingual(const LyricFile& file) { return !groupsOf(file).empty(); }

std::vector<SongLine> unfolded(const LyricFile& file, Problems& problems) {
  const std::vector<Group> groups = groupsOf(file);
  if (translatesLineBefore(groups)) return givenBack(groups);
  std::vector<SongLine> lines;
  for (const Group& group : groups) {
    const FileLine& first = *group.front();
    std::string translation = group.size() > 1 ? group.back()->text : std::string();
    if (group.size() > 2) {
      problems.note(first.number,
                    std::to_string(group.size()) + " lines have the time " + stampText(*first.time),
                    "the first is taken as the lyrics, the last as their translation");
    }
    lines.push_back({first.time, first.text, std::move(translation), first.number, {}});
  }
  return lines;
}

}  // namespace vellora::companion
