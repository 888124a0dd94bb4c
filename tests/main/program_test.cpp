#include "main/program.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char passLine[] = "PASS native AppKit caption rendering (2400 × 1600)\n";
constexpr char untrustedLine[] = "Accessibility trusted: false\n";

MATCHER(SucceededStatus, "exit status 0") { return WIFEXITED(arg) && WEXITSTATUS(arg) == 0; }
MATCHER(AbortedStatus, "aborted") { return WIFSIGNALED(arg) && WTERMSIG(arg) == SIGABRT; }

// The program itself, without a display and without a bus.
TEST(ProgramTest, TheSelfTestPassesAtScaleTwo) {
  Program program({"--render-test"});
  EXPECT_THAT(program.wait(), SucceededStatus());
  EXPECT_EQ(program.output(), passLine);
}

TEST(ProgramTest, TheSelfTestSavesItsPicture) {
  TemporaryFolder folder;
  Program program({"--render-test", "--output", (folder / "x.png").string()});
  EXPECT_THAT(program.wait(), SucceededStatus());
  EXPECT_EQ(program.output(), passLine);
  // The signature and the header of the size, as the PNG standard (ISO/IEC 15948) has them.
  EXPECT_THAT(readText(folder / "x.png"),
              StartsWith(std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x09\x60\0\0\x06\x40", 24)));
}

TEST(ProgramTest, APictureThatCannotBeSavedEndsItBeforeThePassLine) {
  TemporaryFolder folder;
  Program program({"--render-test", "--output", (folder / "missing" / "x.png").string()});
  EXPECT_THAT(program.wait(), AbortedStatus());
  EXPECT_EQ(program.output(), "");
  EXPECT_THAT(program.errors(), HasSubstr("Fatal error: Could not write"));
}

TEST(ProgramTest, OutputAsTheLastArgumentIsIgnored) {
  Program program({"--render-test", "--output"});
  EXPECT_THAT(program.wait(), SucceededStatus());
  EXPECT_EQ(program.output(), passLine);
}

TEST(ProgramTest, TheSelfTestGoesBeforeTheDiagnosis) {
  Program program({"--diagnose", "--render-test"});
  EXPECT_THAT(program.wait(), SucceededStatus());
  EXPECT_EQ(program.output(), passLine);
}

TEST(ProgramTest, TheDiagnosisPrintsThatItIsNotTrusted) {
  TemporaryFolder folder;
  Program program({"--snapshot", (folder / "s.json").string(), "--diagnose"});
  EXPECT_THAT(program.wait(), SucceededStatus());
  EXPECT_EQ(program.output(), untrustedLine);
  EXPECT_THAT(folder.names(), IsEmpty());
}

void waitFor(const std::filesystem::path& file) {
  using namespace std::chrono_literals;
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (!std::filesystem::exists(file) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(10ms);
  }
}

TEST(ProgramTest, TheOverlayRunsAndReportsEvenSo) {
  TemporaryFolder folder;
  Program program({"--unknown", "--snapshot", (folder / "s.json").string()});
  waitFor(folder / "status.json");
  EXPECT_TRUE(program.running());
  EXPECT_THAT(folder.names(), ElementsAre("status.json"));
  EXPECT_EQ(readText(folder / "status.json"),
            R"({"message":"Waiting for fresh lyrics from Tessaly","stopped":false})");
}

TEST(ProgramTest, StartedWithoutStreamsItPrintsIntoNothing) {
  TemporaryFolder folder;
  Program program({"--snapshot", (folder / "s.json").string()}, {}, Program::Streams::none);
  waitFor(folder / "status.json");
  EXPECT_TRUE(program.running());
  for (int stream = 0; stream <= 2; ++stream) EXPECT_EQ(program.descriptor(stream), "/dev/null");
}

// A session bus that takes connections and never answers.
class HungBus {
 public:
  HungBus() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path().copy(address.sun_path, sizeof address.sun_path - 1);
    const auto* const named = reinterpret_cast<const sockaddr*>(&address);
    if (::bind(socket_, named, sizeof address) != 0 || ::listen(socket_, 100) != 0) {
      throw std::runtime_error("cannot listen at " + path());
    }
  }
  ~HungBus() { ::close(socket_); }
  HungBus(const HungBus&) = delete;
  HungBus& operator=(const HungBus&) = delete;

  std::string variable() const { return "DBUS_SESSION_BUS_ADDRESS=unix:path=" + path(); }

 private:
  std::string path() const { return (folder_ / "bus").string(); }

  TemporaryFolder folder_;
  int socket_;
};

TEST(ProgramTest, ASessionBusThatNeverAnswersStopsNothing) {
  const HungBus bus;
  TemporaryFolder folder;
  Program program({"--snapshot", (folder / "s.json").string()}, bus.variable());
  waitFor(folder / "status.json");
  EXPECT_THAT(folder.names(), ElementsAre("status.json"));
  program.terminate();
  program.wait();
}

TEST(ProgramTest, TheOverlaySaysThatThereIsNoDisplay) {
  const struct {
    const char* variable;
    const char* line;
  } cases[] = {
      {"", "Vellora: there is no display (DISPLAY is not set), so no captions can be shown.\n"},
      {"DISPLAY=",
       "Vellora: there is no display (DISPLAY is not set), so no captions can be shown.\n"},
      {"DISPLAY=:64999",
       "Vellora: there is no display (the one that DISPLAY names cannot be reached), so no "
       "captions "
       "can be shown.\n"}};
  for (const auto& each : cases) {
    TemporaryFolder folder;
    Program program({"--snapshot", (folder / "s.json").string()}, each.variable);
    waitFor(folder / "status.json");
    EXPECT_TRUE(program.running());
    EXPECT_EQ(program.errors(), each.line) << each.variable;
    EXPECT_EQ(program.output(), "") << each.variable;
  }
}

TEST(ProgramTest, WhatNeedsNoDisplaySaysNothingOfIt) {
  for (const char* mode : {"--render-test", "--diagnose"}) {
    for (const char* variable : {"", "DISPLAY=:64999"}) {
      Program program({mode}, variable);
      EXPECT_THAT(program.wait(), SucceededStatus()) << mode;
      EXPECT_EQ(program.errors(), "") << mode << " " << variable;
    }
  }
}

}  // namespace
}  // namespace vellora
