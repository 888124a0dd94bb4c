#include "companion/exchange/folder.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "base/files.h"
#include "exchange/exchange_folder.h"
#include "exchange/opened_url.h"

namespace vellora::companion {
namespace {

TEST(ExchangeFolders, TheirUrlIsAcceptedByTheOverlay) {
  for (const char* path : {"/a/Vellora", "/a b/é&x=1;y+z%20?#/Vellora"}) {
    EXPECT_EQ(acceptedSnapshotLocation({ExchangeFolder(path).url()}),
              std::filesystem::path(path) / "snapshot.json");
  }
}

TEST(ExchangeFolders, EndlessTextsAreCut) {
  std::string pattern = "/tmp/vellora-exchange-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  ExchangeFolder folder(pattern);
  const std::string endless(1'000'000, 'x');
  ASSERT_TRUE(writeExchangeFile(folder.path() / nowPlayingFileName,
                                NowPlayingTrack(1, endless, endless, endless)));
  ASSERT_TRUE(writeExchangeFile(folder.path() / statusFileName, OverlayStatus(endless)));
  EXPECT_EQ(folder.nowPlaying()->title.size(), 4000U);
  EXPECT_EQ(folder.status()->message.size(), 4000U);
  std::filesystem::remove_all(pattern);
}

TEST(ExchangeFolders, TellWhatStandsInThemNow) {
  std::string pattern = "/tmp/vellora-exchange-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  ExchangeFolder folder(pattern);
  const auto file = folder.path() / statusFileName;
  EXPECT_FALSE(folder.status());
  for (const char* message : {"first", "second", "first"}) {
    ASSERT_TRUE(writeExchangeFile(file, OverlayStatus(message)));
    for (int i = 0; i < 2; ++i) {
      ASSERT_TRUE(folder.status());
      EXPECT_EQ(folder.status()->message, message);
    }
  }
  ASSERT_TRUE(writeFileAtomically(file, "{"));
  EXPECT_FALSE(folder.status());
  ASSERT_TRUE(writeExchangeFile(file, OverlayStatus("third")));
  EXPECT_EQ(folder.status()->message, "third");
  std::filesystem::remove(file);
  EXPECT_FALSE(folder.status());
  EXPECT_FALSE(folder.nowPlaying());
  std::filesystem::remove_all(pattern);
}

TEST(ExchangeFolders, AreMadeForTheUserAlone) {
  std::string pattern = "/tmp/vellora-exchange-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  const ExchangeFolder folder(std::filesystem::path(pattern) / "x" / "Vellora");
  EXPECT_EQ(folder.make(), std::nullopt);
  EXPECT_EQ(std::filesystem::status(folder.path()).permissions(),
            std::filesystem::perms::owner_all);
  EXPECT_TRUE(folder.write(SyncRequest{1}));
  EXPECT_FALSE(folder.commandWaits());
  std::filesystem::remove_all(pattern);
  EXPECT_FALSE(folder.write(SyncRequest{1}));
}

}  // namespace
}  // namespace vellora::companion
