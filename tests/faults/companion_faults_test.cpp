#include <sys/stat.h>

#include "base/files.h"
#include "companion/exchange/folder.h"
#include "faults/fault_cases.h"
#include "faults/silence.h"
#include "support/temporary_folder.h"

namespace vellora::companion {
namespace {

using faults::Call;
using faults::Fault;

constexpr double someTime = 1'700'000'000;

OverlaySnapshot someSnapshot() {
  return {1, someTime, true, "Night Drive", "River Band", 32, 0, {{"Hello world", "Hallo Welt"}}};
}

// One companion: makes its folder, writes its three files, looks at the overlay's two, withdraws.
class Life {
 public:
  Life() : exchange_(parent_ / "state" / "Vellora") {}

  std::vector<Call> run(const Fault& fault) {
    faults::begin(fault);
    const auto problem = exchange_.make();
    std::vector<Call> calls;
    if (!problem) {
      const bool written = exchange_.write(SyncRequest{someTime}) &&
                           exchange_.write(someSnapshot()) &&
                           exchange_.write(MusicCommand(someTime, MusicCommand::Action::next, ""));
      wroteAll_ = written;
      exchange_.nowPlaying();
      exchange_.status();
      exchange_.commandWaits();
    }
    calls = faults::end();
    EXPECT_TRUE(!problem || problem->starts_with(exchange_.path().string())) << *problem;
    return calls;
  }

  // For nobody but the user, from the first moment at which others could look.
  void expectPrivacy() const {
    struct stat status {};
    if (::stat(exchange_.path().c_str(), &status) != 0) return;
    EXPECT_EQ(status.st_mode & 07777, 0700U);
  }

  void expectOrder() const {
    std::vector<std::string> allowed;
    expectWhole<MusicCommand>("command.json", allowed);
    expectWhole<OverlaySnapshot>("snapshot.json", allowed);
    expectWhole<SyncRequest>("sync.json", allowed);
    std::vector<std::string> names;
    if (std::filesystem::exists(exchange_.path())) {
      for (const auto& entry : std::filesystem::directory_iterator(exchange_.path())) {
        names.push_back(entry.path().filename().string());
      }
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, allowed);
    EXPECT_TRUE(!wroteAll_ || names.size() == 3);
  }

  void expectRecovery() {
    run({});
    EXPECT_TRUE(wroteAll_);
    expectOrder();
    EXPECT_TRUE(exchange_.commandWaits());
    exchange_.withdrawCommand();
    exchange_.withdrawRequest();
    EXPECT_FALSE(exchange_.commandWaits());
  }

 private:
  template <typename Record>
  void expectWhole(const std::string& name, std::vector<std::string>& allowed) const {
    if (!std::filesystem::exists(exchange_.path() / name)) return;
    EXPECT_TRUE(decode<Record>(readText(exchange_.path() / name))) << name;
    allowed.push_back(name);
  }

  TemporaryFolder parent_;
  ExchangeFolder exchange_;
  bool wroteAll_ = false;
};

TEST(CompanionFaultsTest, AFileCallThatFailsLeavesWholeFilesNoTemporaryOneAndAPrivateFolder) {
  const faults::Silence silence;
  const auto runs = faults::withEveryFault([&](const Fault& fault) {
    Life life;
    const auto before = faults::openDescriptors();
    std::vector<Call> calls = life.run(fault);
    EXPECT_EQ(faults::openDescriptors(), before);
    life.expectPrivacy();
    life.expectOrder();
    life.expectRecovery();
    EXPECT_EQ(silence.broken(), "");
    return calls;
  });
  for (const std::string_view function : {"open", "write", "close", "rename", "stat", "mkdir"}) {
    EXPECT_TRUE(runs.contains(std::string(function))) << function;
  }
  EXPECT_FALSE(runs.contains("fsync")) << "the companion waits for the disk";
}

// Settings, shifts, lyrics that were fetched: what nobody would write again.
TEST(CompanionFaultsTest, AFileThatIsToOutliveAPowerCutIsSyncedOrNotWrittenAtAll) {
  const TemporaryFolder folder;
  const auto runs = faults::withEveryFault([&](const Fault& fault) {
    writeText(folder / "a", "old");
    faults::begin(fault);
    const bool written = writeFileAtomically(folder / "a", "new");
    std::vector<Call> calls = faults::end();
    EXPECT_EQ(readText(folder / "a"), written ? "new" : "old");
    return calls;
  });
  EXPECT_TRUE(runs.contains("fsync"));
}

}  // namespace
}  // namespace vellora::companion
