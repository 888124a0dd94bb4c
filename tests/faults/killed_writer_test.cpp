#include <algorithm>
#include <chrono>
#include <ctime>
#include <random>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/files.h"
#include "exchange/exchange_folder.h"
#include "exchange/status_file.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

constexpr int kills = 2000;
constexpr std::size_t manyLines = 300;

// A snapshot of every number of lines below that: files of many lengths, so that one that is cut is
// seen.
OverlaySnapshot snapshotOf(std::size_t lines) {
  OverlaySnapshot snapshot{1, 1, true, "Night Drive", "River Band", 32, 0, {}};
  snapshot.lines.edit().assign(lines,
                               {"Hello world, sung at length", "Hallo Welt, lange gesungen"});
  snapshot.updatedAt = static_cast<double>(lines);
  return snapshot;
}

// Has the system kill this process in so many microseconds.
void endIn(int microseconds) {
  sigevent event{};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = SIGKILL;
  timer_t timer{};
  itimerspec time{};
  time.it_value.tv_nsec = microseconds * 1000L;
  if (::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0) ::_exit(1);
  if (::timer_settime(timer, 0, &time, nullptr) != 0) ::_exit(1);
}

// Writes all three files, over and over, and is killed at some moment after the first round.
[[noreturn]] void publish(const std::filesystem::path& folder,
                          const std::vector<std::string>& snapshots, std::size_t from,
                          int microseconds) {
  for (std::size_t round = 0;; ++round) {
    const std::size_t lines = (from + round * 37) % manyLines;
    writeFileAtomically(folder / "snapshot.json", snapshots[lines]);
    writeExchangeFile(folder / "nowplaying.json", NowPlayingTrack(1, "Night Drive", "A", "B"));
    writeStatusFile(folder / "status.json", std::string(lines, 'x'), false);
    if (round == 0) endIn(microseconds);
  }
}

class KilledWriterTest : public testing::Test {
 protected:
  KilledWriterTest() {
    for (std::size_t lines = 0; lines < manyLines; ++lines) {
      snapshots.push_back(encode(snapshotOf(lines)).value());
    }
  }

  void expectWholeFiles() {
    const std::string snapshot = readWholeFile(folder / "snapshot.json").value_or("");
    EXPECT_NE(std::find(snapshots.begin(), snapshots.end(), snapshot), snapshots.end());
    EXPECT_TRUE(readExchangeFile<NowPlayingTrack>(folder / "nowplaying.json"));
    EXPECT_TRUE(readExchangeFile<OverlayStatus>(folder / "status.json"));
  }

  // What is in the folder beside the three files.
  std::size_t leftovers() { return folder.names().size() - 3; }

  void makeOld() {
    const auto hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      std::filesystem::last_write_time(entry.path(), hourAgo);
    }
  }

  std::vector<std::string> snapshots;  // by their number of lines
  TemporaryFolder folder;
};

TEST_F(KilledWriterTest, LeavesWholeFilesAndWhatItLeavesBesideThemIsSweptOnceOld) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> microseconds(1, 1500);
  std::size_t left = 0;
  for (int killed = 0; killed < kills; ++killed) {
    const int end = microseconds(random);
    const pid_t writer = ::fork();
    if (writer == 0) publish(folder.path(), snapshots, static_cast<std::size_t>(killed), end);
    ASSERT_GT(writer, 0);
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
    ASSERT_NO_FATAL_FAILURE(expectWholeFiles()) << "after " << killed << " kills";
    if (killed % 100 != 99) continue;
    left += leftovers();
    makeOld();
    removeAbandonedFiles(folder.path());
    ASSERT_EQ(leftovers(), 0U);
  }
  // Many ends came in the middle of a writing, or the test would prove nothing.
  EXPECT_GT(left, std::size_t{kills} / 20);
  std::cout << left << " of " << kills << " ends left a temporary file\n";
}

}  // namespace
}  // namespace vellora
