#include "exchange/record_reader.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora {

// A record that counts how often it is looked for, and is never found.
struct CountedRecord {
  static inline int decodings = 0;
};
template <>
std::optional<CountedRecord> decode<CountedRecord>(std::string_view) {
  ++CountedRecord::decodings;
  return std::nullopt;
}

namespace {

namespace fs = std::filesystem;

std::string snapshotText(std::string_view title, std::string_view updatedAt = "100") {
  return R"({"version":1,"updatedAt":)" + std::string(updatedAt) +
         R"(,"enabled":true,"musicTitle":")" + std::string(title) +
         R"(","musicArtist":"River Band","fontSize":32,"verticalOffset":0,"lines":[]})";
}

class RecordReaderTest : public testing::Test {
 protected:
  std::string titleNow() {
    const auto snapshot = reader.read(folder / "snapshot.json");
    return snapshot ? snapshot->musicTitle : "none";
  }

  TemporaryFolder folder;
  RecordReader<OverlaySnapshot> reader;
};

TEST_F(RecordReaderTest, EachCallTellsWhatTheFileHoldsThen) {
  EXPECT_EQ(titleNow(), "none");
  folder.write("snapshot.json", snapshotText("One"));
  EXPECT_EQ(titleNow(), "One");
  EXPECT_EQ(titleNow(), "One");
  folder.write("snapshot.json", snapshotText("Two"));
  EXPECT_EQ(titleNow(), "Two");
  folder.write("snapshot.json", "");
  EXPECT_EQ(titleNow(), "none");
  folder.write("snapshot.json", snapshotText("Two"));
  EXPECT_EQ(titleNow(), "Two");
}

TEST_F(RecordReaderTest, UnchangedBytesAreNotDecodedAgain) {
  folder.write("snapshot.json", snapshotText("One"));
  const auto first = reader.read(folder / "snapshot.json");
  ASSERT_TRUE(first);
  EXPECT_EQ(reader.read(folder / "snapshot.json"), first);
  fs::rename(folder / "snapshot.json", folder / "moved.json");
  EXPECT_EQ(reader.read(folder / "moved.json"), first);
}

TEST_F(RecordReaderTest, FileThatCannotBeReadHoldsNothingWhateverItHeldBefore) {
  folder.write("snapshot.json", snapshotText("One"));
  EXPECT_EQ(titleNow(), "One");
  fs::remove(folder / "snapshot.json");
  EXPECT_EQ(titleNow(), "none");
  fs::create_directory(folder / "snapshot.json");
  EXPECT_EQ(titleNow(), "none");
  fs::remove(folder / "snapshot.json");
  folder.write("snapshot.json", snapshotText("One"));
  EXPECT_EQ(titleNow(), "One");
}

TEST_F(RecordReaderTest, MalformedBytesHoldNothingUntilOthersCome) {
  for (const std::string text : {"{", "[]", R"({"version":1})", "not JSON"}) {
    folder.write("snapshot.json", snapshotText("One"));
    EXPECT_EQ(titleNow(), "One");
    folder.write("snapshot.json", text);
    EXPECT_EQ(titleNow(), "none") << text;
    EXPECT_EQ(titleNow(), "none") << text;
  }
}

TEST_F(RecordReaderTest, MalformedBytesThatStayAreDecodedOnce) {
  RecordReader<CountedRecord> counting;
  folder.write("command.json", std::string(100'000, '['));
  for (int tick = 0; tick < 8; ++tick) EXPECT_FALSE(counting.read(folder / "command.json"));
  EXPECT_EQ(CountedRecord::decodings, 1);
  folder.write("command.json", std::string(100'000, '{'));
  EXPECT_FALSE(counting.read(folder / "command.json"));
  EXPECT_EQ(CountedRecord::decodings, 2);
}

// Only the bytes tell: neither the size, nor the times, nor the file's identity.
TEST_F(RecordReaderTest, ChangeThatLeavesSizeAndTimeIsSeen) {
  folder.write("snapshot.json", snapshotText("One"));
  const auto time = fs::last_write_time(folder / "snapshot.json");
  EXPECT_EQ(titleNow(), "One");
  folder.write("snapshot.json", snapshotText("Two"));
  fs::last_write_time(folder / "snapshot.json", time);
  EXPECT_EQ(titleNow(), "Two");
}

TEST_F(RecordReaderTest, EarlierResultStaysAsItWas) {
  folder.write("snapshot.json", snapshotText("One", "100"));
  const auto first = reader.read(folder / "snapshot.json");
  folder.write("snapshot.json", snapshotText("One", "102"));
  const auto second = reader.read(folder / "snapshot.json");
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->updatedAt, 100);
  EXPECT_EQ(second->updatedAt, 102);
}

TEST_F(RecordReaderTest, SnapshotThatOnlyGetsAnotherTimeKeepsItsLines) {
  const auto written = [](std::string_view time, std::string_view translation) {
    std::string text = snapshotText("One", time);
    return text.replace(text.find("[]"), 2,
                        R"([{"source":"a","translation":")" + std::string(translation) + "\"}]");
  };
  folder.write("snapshot.json", written("100", "b"));
  const auto first = reader.read(folder / "snapshot.json");
  folder.write("snapshot.json", written("1020", "b"));
  const auto second = reader.read(folder / "snapshot.json");
  folder.write("snapshot.json", written("1020", "c"));
  const auto third = reader.read(folder / "snapshot.json");
  ASSERT_TRUE(first && second && third);
  EXPECT_EQ(second->updatedAt, 1020);
  EXPECT_TRUE(second->lines.isSharedWith(first->lines));
  EXPECT_EQ(second->lines.front().translation, "b");
  EXPECT_EQ(third->lines.front().translation, "c");
}

}  // namespace
}  // namespace vellora
