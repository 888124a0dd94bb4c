#include "companion/service/lyrics_cache.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr double begin = 1'000'000;
const WantedSong song{"Night Drive", "River Band", "Album", 233};

class Cache : public testing::Test {
 protected:
  LyricsCache open(CacheLimits limits = {}, const std::string& server = "lrclib.net") const {
    return {folder / "lyrics", server, limits};
  }
  // The one file that is there.
  fs::path file() const { return fs::directory_iterator(folder / "lyrics")->path(); }
  std::size_t files() const {
    const fs::directory_iterator all(folder / "lyrics");
    return static_cast<std::size_t>(std::distance(fs::begin(all), fs::end(all)));
  }
  static WantedSong numbered(int number) { return {"Song " + std::to_string(number), "a", "", 1}; }

  TemporaryFolder folder;
};

TEST_F(Cache, WhatWasSaidIsKnownAfterwards) {
  const KeptLyrics lyrics{"[00:01.00]a \"quoted\" é\n", false, begin};
  open().keep(song, lyrics);
  EXPECT_EQ(open().find(song, begin + 1e9), lyrics) << "lyrics stay";
  EXPECT_EQ(open().find({"NIGHT DRIVE", "river band", "", 233.2}, begin), lyrics);
}

TEST_F(Cache, OtherSongsOtherLengthsAndOtherServersAreOthers) {
  open().keep(song, {"a", false, begin});
  EXPECT_EQ(open().find({"Night Drive", "River Band", "", 240}, begin), std::nullopt);
  EXPECT_EQ(open().find({"Night Drive", "River Band", "", std::nullopt}, begin), std::nullopt);
  EXPECT_EQ(open().find({"Night", "River Band", "", 233}, begin), std::nullopt);
  EXPECT_EQ(open({}, "localhost").find(song, begin), std::nullopt);
}

TEST_F(Cache, ThatThereAreNoneIsRememberedForAWeek) {
  open().keep(song, {"", false, begin});
  EXPECT_TRUE(open().find(song, begin + 7 * 24 * 3600 - 1));
  EXPECT_FALSE(open().find(song, begin + 7 * 24 * 3600 + 1));
  EXPECT_FALSE(open().find(song, begin - 1)) << "the clock was set back";
  open().keep(song, {"", true, begin});
  EXPECT_EQ(open().find(song, begin), (KeptLyrics{"", true, begin}));
}

TEST_F(Cache, ADamagedFileIsAMiss) {
  const std::string whole = [&] {
    open().keep(song, {"text", false, begin});
    return readText(file());
  }();
  for (const std::string& damaged :
       {std::string(), whole.substr(0, whole.size() / 2), std::string("[]"), std::string("{}"),
        std::string(20'000'000, ' '), std::string(100'000, '['),
        R"({"song":"another","fetchedAt":1,"instrumental":false,"lyrics":"x"})" + std::string()}) {
    writeText(file(), damaged);
    EXPECT_EQ(open().find(song, begin), std::nullopt) << damaged.substr(0, 100);
  }
  fs::remove(file());
  EXPECT_EQ(open().find(song, begin), std::nullopt);
  open().keep(song, {"text", false, begin});
  EXPECT_TRUE(open().find(song, begin)) << "and is replaced";
}

TEST_F(Cache, BelongsToTheUserAlone) {
  open().keep(song, {"a", false, begin});
  EXPECT_EQ(fs::status(folder / "lyrics").permissions(), fs::perms::owner_all);
}

TEST_F(Cache, WhatNobodyHasAskedForInTheLongestTimeGoesFirst) {
  const auto cache = open({3, 1'000'000});
  for (int i = 0; i < 3; ++i) {
    cache.keep(numbered(i), {"a", false, begin});
    for (const auto& entry : fs::directory_iterator(folder / "lyrics")) {
      fs::last_write_time(entry, entry.last_write_time() - std::chrono::hours(1));
    }
  }
  EXPECT_TRUE(cache.find(numbered(0), begin));
  cache.keep(numbered(3), {"a", false, begin});
  EXPECT_EQ(files(), 3U);
  EXPECT_TRUE(cache.find(numbered(0), begin)) << "asked for a moment ago";
  EXPECT_FALSE(cache.find(numbered(1), begin));
}

TEST_F(Cache, IsBoundedInBytesToo) {
  const auto cache = open({1000, 10'000});
  for (int i = 0; i < 10; ++i) cache.keep(numbered(i), {std::string(3000, 'x'), false, begin});
  EXPECT_EQ(files(), 3U);
}

TEST_F(Cache, FilesThatAreNotItsOwnAreLeftAlone) {
  fs::create_directory(folder / "lyrics");
  folder.write("lyrics/mine.txt", "x");
  folder.write("lyrics/0123456789ABCDEF.json", "x");
  const auto cache = open({1, 1});
  cache.keep(song, {"a", false, begin});
  cache.keep(numbered(1), {"a", false, begin});
  EXPECT_EQ(files(), 2U);
  EXPECT_TRUE(folder.has("lyrics/mine.txt"));
}

TEST_F(Cache, WithoutAFolderOrWhereNothingCanBeWrittenNothingIsKept) {
  const LyricsCache none({}, "lrclib.net");
  none.keep(song, {"a", false, begin});
  EXPECT_FALSE(none.find(song, begin));
  folder.write("lyrics", "a file");
  open().keep(song, {"a", false, begin});
  EXPECT_FALSE(open().find(song, begin));
}

}  // namespace
}  // namespace vellora::companion
