#include "exchange/command_intake.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "exchange/publishing.h"
#include "support/fake_clock.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

using Action = MusicCommand::Action;

class CommandIntakeTest : public testing::Test {
 protected:
  MusicCommand command(double age, Action action = Action::next, const std::string& title = "T") {
    return {clock.now() - age, action, title, "A", 3};
  }
  void put(const MusicCommand& pending) { folder.write("command.json", *encode(pending)); }
  void perform() {
    performPendingCommand(
        snapshot, clock, reader,
        [this](const MusicCommand& pending) {
          ran.push_back(pending);
          fileStoodWhenRun = folder.has("command.json");
          lastPublishWhenRun = lastNowPlayingPublish;
        },
        lastNowPlayingPublish);
  }

  TemporaryFolder folder;
  FakeClock clock;
  SnapshotLocation snapshot = folder / "s.json";
  double lastNowPlayingPublish = clock.now() - 0.1;
  double lastPublishWhenRun = 0;
  bool fileStoodWhenRun = false;
  std::vector<MusicCommand> ran;
  RecordReader<MusicCommand> reader;
};

TEST_F(CommandIntakeTest, FreshCommandIsRemovedAndRunOnce) {
  const MusicCommand pending = command(5, Action::seek);
  put(pending);
  perform();
  ASSERT_EQ(ran.size(), 1U);
  EXPECT_TRUE(ran[0] == pending);
  EXPECT_FALSE(folder.has("command.json"));
  perform();
  EXPECT_EQ(ran.size(), 1U);
}

TEST_F(CommandIntakeTest, FileIsGoneBeforeTheCommandRuns) {
  put(command(5));
  perform();
  ASSERT_EQ(ran.size(), 1U);
  EXPECT_FALSE(fileStoodWhenRun);
}

TEST_F(CommandIntakeTest, StaleCommandIsRemovedAndNotRun) {
  for (const double age : {20.0, 25.0}) {
    put(command(age));
    const double before = lastNowPlayingPublish;
    perform();
    EXPECT_TRUE(ran.empty()) << age;
    EXPECT_FALSE(folder.has("command.json")) << age;
    EXPECT_EQ(lastNowPlayingPublish, before) << age;
  }
  put(command(19.9));
  perform();
  EXPECT_EQ(ran.size(), 1U);
}

TEST_F(CommandIntakeTest, CommandFromTheFutureIsRemovedAndNotRun) {
  put(command(-3));
  perform();
  EXPECT_TRUE(ran.empty());
  EXPECT_FALSE(folder.has("command.json"));
  put(command(-1));
  perform();
  EXPECT_EQ(ran.size(), 1U);
}

TEST_F(CommandIntakeTest, FileThatIsNoCommandStaysAndIsNeverRun) {
  const std::string time = std::to_string(clock.now());
  const std::string begin = "{\"requestedAt\":" + time + ",\"title\":\"\",\"artist\":\"\"";
  for (const std::string& content :
       {begin + ",\"action\":\"next\"}", begin + ",\"action\":\"Next\",\"position\":0}",
        begin + ",\"action\":\"pause\",\"position\":0}", std::string("not JSON"), std::string()}) {
    folder.write("command.json", content);
    perform();
    perform();
    EXPECT_TRUE(ran.empty()) << content;
    EXPECT_TRUE(folder.has("command.json")) << content;
    EXPECT_EQ(folder.read("command.json"), content);
  }
}

TEST_F(CommandIntakeTest, MalformedFileThatIsReplacedByACommandIsRun) {
  folder.write("command.json", "{");
  perform();
  put(command(1));
  perform();
  EXPECT_EQ(ran.size(), 1U);
}

TEST_F(CommandIntakeTest, OnlyTheLaterOfTwoCommandsIsSeen) {
  put(command(2, Action::previous, "first"));
  put(command(1, Action::next, "second"));
  perform();
  perform();
  ASSERT_EQ(ran.size(), 1U);
  EXPECT_EQ(ran[0].title, "second");
}

TEST_F(CommandIntakeTest, EffectOfACommandIsPublishedAtOnce) {
  put(command(5));
  perform();
  EXPECT_EQ(lastPublishWhenRun, clock.now() - 0.1);
  EXPECT_EQ(lastNowPlayingPublish, distantPast);
  publishNowPlaying(snapshot, clock, lastNowPlayingPublish,
                    [&] { return NowPlayingTrack(clock.now(), "T", "A", "B"); });
  EXPECT_TRUE(folder.has("nowplaying.json"));
}

TEST_F(CommandIntakeTest, WithoutAFileNothingHappens) {
  const double before = lastNowPlayingPublish;
  perform();
  EXPECT_TRUE(ran.empty());
  EXPECT_EQ(lastNowPlayingPublish, before);
}

TEST_F(CommandIntakeTest, WithoutALocationTheFileStays) {
  put(command(1));
  snapshot = std::nullopt;
  perform();
  EXPECT_TRUE(ran.empty());
  EXPECT_TRUE(folder.has("command.json"));
}

TEST_F(CommandIntakeTest, CommandWhoseFileCannotBeRemovedRunsAgainUntilItIsStale) {
  put(command(0));
  ::chmod((folder / "command.json").c_str(), 0644);
  ::chmod(folder.path().c_str(), 0555);
  {
    const OrdinaryUser user;
    ASSERT_TRUE(user.worked());
    perform();
    clock.advance(19.9);
    perform();
    EXPECT_EQ(ran.size(), 2U);
    clock.advance(0.1);
    perform();
    EXPECT_EQ(ran.size(), 2U);
  }
  ::chmod(folder.path().c_str(), 0755);
  EXPECT_TRUE(folder.has("command.json"));
}

TEST_F(CommandIntakeTest, TheSameCommandWrittenAgainRunsAgain) {
  put(command(1));
  perform();
  put(command(1));
  perform();
  EXPECT_EQ(ran.size(), 2U);
  EXPECT_FALSE(folder.has("command.json"));
}

TEST_F(CommandIntakeTest, FolderInThePlaceOfTheFileIsLeftAlone) {
  std::filesystem::create_directory(folder / "command.json");
  perform();
  EXPECT_TRUE(ran.empty());
  EXPECT_TRUE(folder.has("command.json"));
}

}  // namespace
}  // namespace vellora
