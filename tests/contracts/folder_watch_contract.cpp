#include "contracts/folder_watch_contract.h"

#include <gtest/gtest.h>
#include <poll.h>

#include "base/files.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

// A folder that is watched.
struct Watched {
  explicit Watched(FolderWatchSubject& subject) {
    std::filesystem::create_directory(watched);
    watch = subject.watch(watched, {"nowplaying.json", "status.json"});
  }
  bool tells() const {
    pollfd descriptor{watch->descriptor(), POLLIN, 0};
    return poll(&descriptor, 1, 0) == 1;
  }
  void put(const char* name) const { EXPECT_TRUE(writeFileAtomically(watched / name, "x")); }

  TemporaryFolder folder;
  const std::filesystem::path watched = folder.path() / "Vellora";
  std::unique_ptr<FolderWatch> watch;
};

}  // namespace

TEST_P(FolderWatchContract, TellsOfAFileThatIsPutInItsPlaceOrRemoved) {
  Watched here(*subject);
  ASSERT_TRUE(here.watch);
  EXPECT_FALSE(here.tells());
  here.put("nowplaying.json");
  EXPECT_TRUE(here.tells());
  EXPECT_TRUE(here.watch->take());
  EXPECT_FALSE(here.tells());
  EXPECT_FALSE(here.watch->take());
  removeFile(here.watched / "nowplaying.json");
  EXPECT_TRUE(here.tells());
  EXPECT_TRUE(here.watch->take());
}

TEST_P(FolderWatchContract, OtherFilesAreOfNoUse) {
  Watched here(*subject);
  ASSERT_TRUE(here.watch);
  here.put("snapshot.json");
  EXPECT_FALSE(here.watch->take());
  here.put("snapshot.json");
  here.put("status.json");
  EXPECT_TRUE(here.watch->take());
}

TEST_P(FolderWatchContract, EndsWithTheFolder) {
  Watched here(*subject);
  ASSERT_TRUE(here.watch);
  EXPECT_TRUE(here.watch->watches());
  std::filesystem::rename(here.watched, here.folder.path() / "other");
  EXPECT_TRUE(here.tells());
  here.watch->take();
  EXPECT_FALSE(here.watch->watches());
  EXPECT_EQ(subject->watch(here.watched, {}), nullptr);
}

}  // namespace vellora
