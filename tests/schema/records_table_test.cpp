#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exchange/records/json.h"

namespace vellora {
namespace {

bool reads(const std::string& schema, const std::string& text) {
  if (schema == "overlay-line") return decode<OverlayLine>(text).has_value();
  if (schema == "overlay-snapshot") return decode<OverlaySnapshot>(text).has_value();
  if (schema == "now-playing-track") return decode<NowPlayingTrack>(text).has_value();
  if (schema == "sync-request") return decode<SyncRequest>(text).has_value();
  if (schema == "music-command") return decode<MusicCommand>(text).has_value();
  if (schema == "overlay-status") return decode<OverlayStatus>(text).has_value();
  ADD_FAILURE() << "no such record: " << schema;
  return false;
}

std::vector<std::string> columnsOf(const std::string& line) {
  std::vector<std::string> columns;
  std::size_t begin = 0;
  for (std::size_t end; (end = line.find('\t', begin)) != std::string::npos; begin = end + 1) {
    columns.push_back(line.substr(begin, end - begin));
  }
  columns.push_back(line.substr(begin));
  return columns;
}

// The same table that the schemas are held against, so that both draw the line at the same place;
// where the decoder takes more, the table says so.
TEST(RecordsTableTest, TheDecoderJudgesTheTableAsItSays) {
  std::ifstream file(VELLORA_RECORDS_TABLE);
  ASSERT_TRUE(file.is_open());
  int rows = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("# ")) continue;
    const std::vector<std::string> columns = columnsOf(line);
    ASSERT_EQ(columns.size(), 5U) << line;
    ASSERT_TRUE(columns[1] == "reads" || columns[1] == "refuses") << line;
    EXPECT_EQ(reads(columns[0], columns[4]), columns[1] == "reads")
        << columns[0] << ", " << columns[3] << ": " << columns[4];
    // A file that a companion may write is one that the program reads.
    EXPECT_FALSE(columns[1] == "refuses" && columns[2] == "valid") << line;
    ++rows;
  }
  EXPECT_GT(rows, 150);
}

}  // namespace
}  // namespace vellora
