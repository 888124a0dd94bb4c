#include <chrono>

#include <sys/wait.h>
#include <unistd.h>

#include "controller/controller_fixture.h"
#include "faults/fault_cases.h"
#include "faults/silence.h"

namespace vellora {
namespace {

using faults::Call;
using faults::Fault;

constexpr std::string_view oldNowPlaying =
    R"({"version":1,"updatedAt":1,"title":"Before","artist":"","album":"","position":0,)"
    R"("playing":false})";

pid_t aProcessThatIsGone() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return child;
}

// One overlay with an exchange folder that a companion and an earlier overlay have filled: launch,
// which sweeps the folder, takes the command and publishes, and a tick that follows the player.
class Life final : public ControllerTest {
 public:
  explicit Life(pid_t gone) : leftover_(".vellora-" + std::to_string(gone) + "-0") {
    folder.write("status.json", StatusFiles::stopped);
    folder.write("nowplaying.json", oldNowPlaying);
    folder.write(leftover_, "half a f");
    std::filesystem::last_write_time(
        folder / leftover_, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    writeSnapshot();
    writeSync();
    writeCommand();
    play("Night Drive");
    openLyrics();
  }

  std::vector<Call> run(const Fault& fault) {
    faults::begin(fault);
    controller->applicationDidFinishLaunching();
    bringMusicToFront();
    platform.clock->advance(0.6);
    tickAndRead();
    return faults::end();
  }

  // Whatever went wrong, what readers see is whole, and what is not for them is gone.
  void expectOrder(const Fault& fault, const std::vector<Call>& calls) const {
    const bool unswept =
        fault.call != 0 && fault.error != 0 && folder.has(leftover_);  // the sweep itself failed
    std::vector<std::string> allowed{"lyrics.json", "nowplaying.json", "status.json", "sync.json"};
    if (unswept) allowed.insert(allowed.begin(), leftover_);
    if (folder.has("command.json")) allowed.insert(allowed.begin() + unswept, "command.json");
    EXPECT_EQ(folder.names(), allowed);
    EXPECT_TRUE(decode<OverlayStatus>(statusFile())) << statusFile();
    EXPECT_TRUE(decode<NowPlayingTrack>(nowPlayingFile())) << nowPlayingFile();
    EXPECT_TRUE(decode<OverlaySnapshot>(folder.read("lyrics.json")));
    EXPECT_TRUE(decode<SyncRequest>(folder.read("sync.json")));
    // What ran was taken, unless it could not be removed.
    if (folder.has("command.json") && !output.str().empty()) {
      EXPECT_EQ(calls.at(fault.call - 1).function, "unlink");
    }
  }

  // Nothing goes wrong any more, and the companion goes on.
  void expectRecovery() {
    const std::size_t ran = commandsRun();
    const bool waits = folder.has("command.json");
    platform.clock->advance(0.6);
    writeSnapshot();
    writeSync();
    bringToFront("org.example.Editor");
    tickAndRead();
    EXPECT_EQ(statusFile(), StatusFiles::ready);
    const auto track = decode<NowPlayingTrack>(nowPlayingFile());
    ASSERT_TRUE(track);
    EXPECT_EQ(track->updatedAt, now());
    EXPECT_EQ(track->title, "Night Drive");
    EXPECT_FALSE(folder.has("command.json"));
    EXPECT_EQ(commandsRun(), ran + (waits ? 1 : 0));
    EXPECT_GE(commandsRun(), 1U);
    bringMusicToFront();
    tickAndRead();
    EXPECT_EQ(statusFile(), StatusFiles::oneRow);
    EXPECT_TRUE(panelVisible());
    platform.app.terminate();
  }

  // The output has a line for each command, and nothing else.
  std::size_t commandsRun() const {
    const std::string text = output.str();
    const std::string line = "next Song: Night Drive|Artist|Album|12500|playing\n";
    EXPECT_EQ(text.size() % line.size(), 0U) << text;
    EXPECT_TRUE(text.empty() || text.starts_with(line)) << text;
    return text.size() / line.size();
  }

 private:
  void TestBody() override {}
  const std::string leftover_;
};

TEST(ExchangeFaultsTest, AFileCallThatFailsLeavesWholeFilesNoTemporaryOneAndARightNextTick) {
  const pid_t gone = aProcessThatIsGone();
  const faults::Silence silence;
  const auto runs = faults::withEveryFault([&](const Fault& fault) {
    Life life(gone);
    const auto before = faults::openDescriptors();
    std::vector<Call> calls = life.run(fault);
    EXPECT_EQ(faults::openDescriptors(), before);
    life.expectOrder(fault, calls);
    life.expectRecovery();
    EXPECT_EQ(silence.broken(), "");
    return calls;
  });
  // The comparison is worth something only where every kind of call was met.
  for (const std::string_view function : {"open", "read", "write", "close", "rename", "unlink",
                                          "stat", "fstat", "openat", "fdopendir", "readdir"}) {
    EXPECT_TRUE(runs.contains(std::string(function))) << function;
  }
  EXPECT_FALSE(runs.contains("fsync")) << "the overlay waits for the disk";
  int all = 0;
  for (const auto& [function, count] : runs) all += count;
  std::cout << all << " runs\n";
}

}  // namespace
}  // namespace vellora
