#include "exchange/exchange_folder.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora {
namespace {

TEST(ExchangeFolderTest, WithoutASnapshotLocationThereIsNoFolderAndNoFile) {
  EXPECT_EQ(exchangeDirectory(std::nullopt), std::nullopt);
  EXPECT_EQ(exchangeFile(std::nullopt, statusFileName), std::nullopt);
}

TEST(ExchangeFolderTest, EveryFileLiesBesideTheSnapshot) {
  const SnapshotLocation snapshot = "/a/b/any name.json";
  EXPECT_EQ(exchangeDirectory(snapshot), "/a/b");
  EXPECT_EQ(exchangeFile(snapshot, statusFileName), "/a/b/status.json");
  EXPECT_EQ(exchangeFile(snapshot, syncRequestFileName), "/a/b/sync.json");
  EXPECT_EQ(exchangeFile(snapshot, commandFileName), "/a/b/command.json");
  EXPECT_EQ(exchangeFile(snapshot, nowPlayingFileName), "/a/b/nowplaying.json");
}

TEST(ExchangeFolderTest, SlashAtTheEndIsNoComponent) {
  EXPECT_EQ(exchangeDirectory("/a/b/"), "/a");
  EXPECT_EQ(exchangeDirectory("/a"), "/");
}

TEST(ExchangeFolderTest, FileIsTheNameInTheFolderHoweverThePathIsWritten) {
  EXPECT_EQ(exchangeFile("/a/b/", statusFileName), "/a/status.json");
  EXPECT_EQ(exchangeFile("/a/b//", statusFileName), "/a/status.json");
  EXPECT_EQ(exchangeFile("lyrics.json", statusFileName), "status.json");
  EXPECT_EQ(exchangeFile("/", statusFileName), "/status.json");
  EXPECT_EQ(exchangeFile("", statusFileName), "status.json");
  const std::vector<std::string> parts = {"/", "//", "a", "é b", ".", "..", "/x.json"};
  for (const std::string& one : parts) {
    for (const std::string& two : parts) {
      for (const std::string& three : parts) {
        const SnapshotLocation snapshot = one + two + three;
        EXPECT_EQ(exchangeFile(snapshot, statusFileName),
                  *exchangeDirectory(snapshot) / statusFileName)
            << *snapshot;
      }
    }
  }
}

TEST(ExchangeFolderTest, UnreadableAndMalformedFilesHoldNoRecord) {
  const TemporaryFolder folder;
  EXPECT_FALSE(readExchangeFile<SyncRequest>(folder / "sync.json"));
  folder.write("sync.json", "{\"updatedAt\":");
  EXPECT_FALSE(readExchangeFile<SyncRequest>(folder / "sync.json"));
  folder.write("sync.json", "{\"updatedAt\":5}");
  ASSERT_TRUE(readExchangeFile<SyncRequest>(folder / "sync.json"));
  EXPECT_EQ(readExchangeFile<SyncRequest>(folder / "sync.json")->updatedAt, 5);
}

TEST(ExchangeFolderTest, RecordThatCannotBeEncodedLeavesTheOldFile) {
  const TemporaryFolder folder;
  folder.write("sync.json", "old");
  const SyncRequest request{std::numeric_limits<double>::quiet_NaN()};
  EXPECT_FALSE(writeExchangeFile(folder / "sync.json", request));
  EXPECT_EQ(folder.read("sync.json"), "old");
}

TEST(ExchangeFolderTest, WritingIntoAFolderThatDoesNotExistLeavesNothing) {
  const TemporaryFolder folder;
  EXPECT_FALSE(writeExchangeFile(folder / "missing/sync.json", SyncRequest{1}));
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace vellora
