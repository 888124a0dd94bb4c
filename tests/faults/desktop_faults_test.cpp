#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <vector>

#include <signal.h>

#include "base/files.h"
#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

// The overlay's whole life beside a player, in which one call of the X server or of a bus fails:
// start, follow, a command, the end.
class DesktopFaults : public Desk {
 protected:
  struct LoggedCall {
    std::string place;
    std::string function;
    bool failed = false;
  };

  struct Life {
    bool followed = false;
    bool seen = false;  // captions, by the witness
    bool took = false;  // the command
    bool endedByItself = false;
    std::optional<int> exitStatus;  // nothing: it did not end when it was asked to
    std::vector<LoggedCall> calls;
    std::string said;
  };

  void SetUp() override {
    Desk::SetUp();
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "1", "--paused", "--position", "12"}));
    keepSnapshot(snapshotOfPlayer());
    keepSync();
  }

  Life live(const std::string& call, const std::string& place) {
    Life life;
    const auto log = folder / "calls";
    removeFile(log);
    removeFile(folder / "overlay.log");
    removeFile(exchange / statusFileName);
    environment = {{"LD_PRELOAD", VELLORA_FAULTS},
                   {"VELLORA_FAULT_CALL", call},
                   {"VELLORA_FAULT_SITE", place},
                   {"VELLORA_FAULT_LOG", log}};
    startOverlay();
    const auto ended = [&] { return !overlay->running(); };
    const auto blind = [&] { return isBlind(said()); };
    life.followed = waitFor([&] { return following() || ended() || blind(); }) && following();
    life.seen = life.followed && waitFor([&] { return captionsRight(); });
    // A command that is too old to be carried out is taken as every other is.
    send(MusicCommand(now() - 30, MusicCommand::Action::next, ""));
    life.took = waitFor([&] { return !fileExists(exchange / commandFileName) || ended(); }) &&
                !fileExists(exchange / commandFileName);
    life.endedByItself = ended();
    overlay->signal(SIGTERM);
    waitFor(ended);
    life.exitStatus = overlay->exitStatus();
    overlay.reset();
    removeFile(exchange / commandFileName);
    life.calls = callsIn(log);
    life.said = said();
    return life;
  }

  // It follows with captions on the screen, or has said that there is no display; it ticks, and
  // ends when it is asked to, or at once where it was told that it has lost the display. On
  // standard error stands what is documented, and once.
  void expectRight(const Life& life) const {
    ASSERT_TRUE(life.exitStatus) << "it does not end";
    const bool lostDisplay = life.said.find("the display is gone") != std::string::npos;
    EXPECT_EQ(life.exitStatus, lostDisplay ? 3 : 0) << life.said;
    if (lostDisplay) {
      EXPECT_EQ(failedFunction(life), "xcb_connection_has_error");
    }
    if (!isBlind(life.said)) {
      EXPECT_TRUE(life.followed);
      EXPECT_TRUE(life.seen);
      EXPECT_TRUE(life.took);
      EXPECT_FALSE(life.endedByItself);
    }
    EXPECT_LE(std::ranges::count(life.said, '\n'), 1) << life.said;
    EXPECT_TRUE(life.said.empty() || life.said.starts_with("Vellora: ") ||
                life.said.starts_with("Music script error: "))
        << life.said;
  }

  static std::string failedFunction(const Life& life) {
    const auto failed = std::ranges::find_if(life.calls, &LoggedCall::failed);
    return failed == life.calls.end() ? "" : failed->function;
  }

  static bool isBlind(const std::string& said) { return said.find("display") != std::string::npos; }
  std::string said() const { return readWholeFile(folder / "overlay.log").value_or(""); }

  static std::vector<LoggedCall> callsIn(const std::filesystem::path& log) {
    std::vector<LoggedCall> calls;
    std::ifstream file(log);
    for (std::string line; std::getline(file, line);) {
      LoggedCall call;
      std::istringstream words(line);
      std::string failed;
      words >> call.place >> call.function >> failed;
      call.failed = failed == "failed";
      calls.push_back(call);
    }
    return calls;
  }
};

// Every `step`th of them, or each where VELLORA_LONG is set.
std::size_t stepOf(std::size_t step) { return std::getenv("VELLORA_LONG") != nullptr ? 1 : step; }

// Each place in the program that calls, at its first call. What the program does about a call does
// not depend on what is called elsewhere, so this meets all that it can do.
TEST_F(DesktopFaults, TheFirstCallFromEachPlaceThatFailsNeitherEndsNorBlindsTheOverlay) {
  const Life whole = live("0", "");
  expectRight(whole);
  std::set<std::pair<std::string, std::string>> places;
  for (const LoggedCall& call : whole.calls) places.insert({call.function, call.place});
  EXPECT_GT(places.size(), 80U);
  std::size_t number = 0;
  std::size_t failed = 0;
  for (const auto& [function, place] : places) {
    if (++number % stepOf(4) != 0) continue;
    SCOPED_TRACE(function + " from " + place);
    const Life life = live("1", place);
    expectRight(life);
    if (HasFailure()) return;
    for (const LoggedCall& call : life.calls) failed += call.failed ? 1 : 0;
  }
  EXPECT_GT(failed, number / stepOf(4) / 2);
  std::cout << failed << " of " << number << " places failed\n";
}

// Any call: also the later ones from a place, which find the overlay in another state.
TEST_F(DesktopFaults, ACallThatFailsNeitherEndsNorBlindsTheOverlay) {
  const std::size_t calls = live("0", "").calls.size();
  ASSERT_GT(calls, 1000U);
  std::size_t failed = 0;
  const std::size_t step = stepOf(calls / 12);
  for (std::size_t number = step; number <= calls; number += step) {
    SCOPED_TRACE("call " + std::to_string(number));
    const Life life = live(std::to_string(number), "");
    expectRight(life);
    if (HasFailure()) return;
    for (const LoggedCall& call : life.calls) failed += call.failed ? 1 : 0;
  }
  EXPECT_GT(failed, calls / step / 2);  // the last numbers are not always reached
  std::cout << failed << " of " << calls << " calls failed\n";
}

}  // namespace
}  // namespace vellora::e2e
