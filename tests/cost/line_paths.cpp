// What is done with a snapshot's lines: decoding them, preparing them for looking rows up, and
// looking rows up.
#include <memory>
#include <string>
#include <vector>

#include "cost/hot_path.h"
#include "exchange/record_reader.h"
#include "exchange/records/json.h"
#include "matching/translation_index.h"
#include "support/temporary_folder.h"
#include "support/verse.h"

namespace vellora {
namespace {

constexpr std::int64_t lineCount = 60;
constexpr std::int64_t english = 0;

HotPath decoding() {
  const OverlaySnapshot snapshot{
      1, 1000, true, "Night Drive", "River Band", 32, 0, verse::makeLines(english, lineCount)};
  return {"decode a snapshot of 60 lines", 20, [bytes = encode(snapshot).value()] {
            const auto decoded = decode<OverlaySnapshot>(bytes);
            return decoded && decoded->lines.size() == lineCount;
          }};
}

// A companion keeps its snapshot fresh: the same lines beside another time. A turn is two of them.
HotPath readingFresh() {
  struct Fresh {
    TemporaryFolder folder;
    RecordReader<OverlaySnapshot> reader;
  };
  const auto fresh = std::make_shared<Fresh>();
  OverlaySnapshot snapshot{1,
                           1732291200.125,
                           true,
                           "Night Drive",
                           "River Band",
                           32,
                           0,
                           verse::makeLines(english, lineCount)};
  fresh->folder.write("even.json", encode(snapshot).value());
  snapshot.updatedAt = 1732291201.6;
  fresh->folder.write("odd.json", encode(snapshot).value());
  return {"read 60 lines beside another time", 20, [fresh] {
            const auto even = fresh->reader.read(fresh->folder / "even.json");
            const auto odd = fresh->reader.read(fresh->folder / "odd.json");
            return even && odd && even->updatedAt < odd->updatedAt &&
                   odd->lines.size() == lineCount;
          }};
}

HotPath indexing(std::int64_t language) {
  const auto lines = verse::makeLines(language, lineCount);
  return {std::string("index 60 lines, ") + verse::nameOf(language), 20, [lines] {
            const TranslationIndex index(lines);
            return index.translation(lines[7].source) == lines[7].translation;
          }};
}

// A turn is every row once.
HotPath lookingUp(std::int64_t language) {
  const auto lines = verse::makeLines(language, lineCount);
  const auto rows = verse::makeRows(lines);
  const auto index = std::make_shared<const TranslationIndex>(lines);
  return {std::string("look 64 rows up, ") + verse::nameOf(language), 10, [rows, index] {
            bool found = true;
            for (const std::string& row : rows) found = index->translation(row) && found;
            return found;
          }};
}

}  // namespace

std::vector<HotPath> linePaths() {
  std::vector<HotPath> paths{decoding(), readingFresh()};
  for (std::int64_t language = 0; language < verse::languages; ++language) {
    paths.push_back(indexing(language));
    paths.push_back(lookingUp(language));
  }
  return paths;
}

}  // namespace vellora
