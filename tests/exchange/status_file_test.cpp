#include "exchange/status_file.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora {
namespace {

TEST(StatusFileTest, LineIsWrittenWithItsFlag) {
  const TemporaryFolder folder;
  EXPECT_TRUE(writeStatusFile(folder / "status.json", "Ready — bring Music to the front", false));
  EXPECT_EQ(folder.read("status.json"),
            "{\"message\":\"Ready — bring Music to the front\",\"stopped\":false}");
  EXPECT_TRUE(writeStatusFile(folder / "status.json", "Overlay stopped", true));
  EXPECT_EQ(folder.read("status.json"), "{\"message\":\"Overlay stopped\",\"stopped\":true}");
  EXPECT_EQ(folder.names().size(), 1U);
}

TEST(StatusFileTest, OnlyARepeatedLineWithItsFileInPlaceIsCurrent) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "status.json";
  EXPECT_FALSE(isStatusCurrent(file, "a", false, "a"));
  folder.write("status.json", "anything");
  EXPECT_TRUE(isStatusCurrent(file, "a", false, "a"));
  EXPECT_FALSE(isStatusCurrent(file, "a", true, "a"));
  EXPECT_FALSE(isStatusCurrent(file, "b", false, "a"));
  EXPECT_FALSE(isStatusCurrent(file, "a", false, ""));
  EXPECT_TRUE(isStatusCurrent(file, "\u00E9", false, "e\u0301"));
  std::filesystem::remove(file);
  EXPECT_FALSE(isStatusCurrent(file, "a", false, "a"));
}

TEST(StatusFileTest, FolderThatDoesNotExistIsNotMade) {
  const TemporaryFolder folder;
  EXPECT_FALSE(writeStatusFile(folder / "missing/status.json", "a", false));
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace vellora
