#include "platform/folder_watch.h"

#include <gtest/gtest.h>
#include <poll.h>

#include "base/files.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

class FolderWatches : public testing::Test {
 protected:
  void SetUp() override {
    watched = folder.path() / "Vellora";
    std::filesystem::create_directory(watched);
    watch = makeFolderWatch(watched, {"nowplaying.json", "status.json"});
    ASSERT_TRUE(watch);
  }
  bool tells() const {
    pollfd descriptor{watch->descriptor(), POLLIN, 0};
    return poll(&descriptor, 1, 0) == 1;
  }
  void put(const char* name) const { ASSERT_TRUE(writeFileAtomically(watched / name, "x")); }

  TemporaryFolder folder;
  std::filesystem::path watched;
  std::unique_ptr<FolderWatch> watch;
};

TEST_F(FolderWatches, TellOfAFileThatIsPutInItsPlaceOrRemoved) {
  EXPECT_FALSE(tells());
  put("nowplaying.json");
  EXPECT_TRUE(tells());
  EXPECT_TRUE(watch->take());
  EXPECT_FALSE(tells());
  EXPECT_FALSE(watch->take());
  removeFile(watched / "nowplaying.json");
  EXPECT_TRUE(tells());
  EXPECT_TRUE(watch->take());
}

TEST_F(FolderWatches, OtherFilesAreOfNoUse) {
  put("snapshot.json");
  EXPECT_FALSE(watch->take());
  put("snapshot.json");
  put("status.json");
  EXPECT_TRUE(watch->take());
}

TEST_F(FolderWatches, EndWithTheFolder) {
  EXPECT_TRUE(watch->watches());
  std::filesystem::rename(watched, folder.path() / "other");
  EXPECT_TRUE(tells());
  watch->take();
  EXPECT_FALSE(watch->watches());
  EXPECT_EQ(makeFolderWatch(watched, {}), nullptr);
}

}  // namespace
}  // namespace vellora
