#include "golden/golden_table.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace vellora::golden {
namespace {

// The reader itself: a table that cannot be read, or has no rows, must never pass for a checked
// one.
class GoldenTableTest : public testing::Test {
 protected:
  void SetUp() override {
    const char* named = std::getenv("VELLORA_GOLDENS");
    before = named != nullptr ? named : "";
    std::string pattern = testing::TempDir() + "vellora-golden-XXXXXX";
    folder = mkdtemp(pattern.data());
    setenv("VELLORA_GOLDENS", folder.c_str(), 1);
  }
  void TearDown() override {
    if (before.empty()) {
      unsetenv("VELLORA_GOLDENS");
    } else {
      setenv("VELLORA_GOLDENS", before.c_str(), 1);
    }
    std::filesystem::remove_all(folder);
  }
  void write(const std::string& name, const std::string& content) {
    std::ofstream(folder / name) << content;
  }

  std::string before;
  std::filesystem::path folder;
};

TEST_F(GoldenTableTest, AMissingTableFails) {
  EXPECT_FATAL_FAILURE(everyRow("missing.tsv", 1, [](const Row&) { return std::string(); }),
                       "cannot read");
}

TEST_F(GoldenTableTest, ATableWithoutRowsFails) {
  write("empty.tsv", "# a comment\n# columns: none\n");
  EXPECT_NONFATAL_FAILURE(everyRow("empty.tsv", 1, [](const Row&) { return std::string(); }),
                          "has no rows");
}

TEST_F(GoldenTableTest, RowsReachTheCheckWithTheirColumns) {
  write("two.tsv", "# a comment\na\tb\n\tc\n");
  std::vector<Row> rows;
  everyRow("two.tsv", 2, [&](const Row& row) {
    rows.push_back(row);
    return std::string();
  });
  EXPECT_EQ(rows, (std::vector<Row>{{"a", "b"}, {"", "c"}}));
}

TEST_F(GoldenTableTest, FieldsAreReadInTheirForms) {
  EXPECT_EQ(fromBase64("w6k="), "é");
  EXPECT_EQ(fromCodePoints("0041 4E2D 1F3B5"), "A中🎵");
  EXPECT_EQ(toCodePoints("A中🎵"), "0041 4E2D 1F3B5");
  EXPECT_EQ(fromBits("4045400000000000"), 42.5);
  EXPECT_EQ(number("-0.5"), -0.5);
  EXPECT_ANY_THROW(fromBase64("?"));
}

}  // namespace
}  // namespace vellora::golden
