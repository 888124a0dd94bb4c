#include "main/program.h"

#include <chrono>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// The view is 1200 points wide and 800 high; a display has one pixel to a point, or two.
constexpr char passAtOne[] = "PASS native AppKit caption rendering (1200 × 800)\n";
constexpr char passAtTwo[] = "PASS native AppKit caption rendering (2400 × 1600)\n";

MATCHER(SucceededStatus, "exit status 0") { return WIFEXITED(arg) && WEXITSTATUS(arg) == 0; }
MATCHER(AbortedStatus, "aborted") { return WIFSIGNALED(arg) && WTERMSIG(arg) == SIGABRT; }

TEST(ProgramTest, TheSelfTestPassesAndSavesItsPicture) {
  TemporaryFolder folder;
  Program program({"--render-test", "--output", (folder / "x.png").string()});
  EXPECT_THAT(program.wait(), SucceededStatus()) << program.errors();
  EXPECT_THAT(program.output(), AnyOf(passAtOne, passAtTwo));
  // The signature and the header of the size, as the PNG standard (ISO/IEC 15948) has them.
  const std::string signature("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  const std::string size = program.output() == passAtOne
                               ? std::string("\0\0\x04\xB0\0\0\x03\x20", 8)
                               : std::string("\0\0\x09\x60\0\0\x06\x40", 8);
  EXPECT_THAT(readText(folder / "x.png"), StartsWith(signature + size));
}

TEST(ProgramTest, APictureThatCannotBeSavedEndsItBeforeThePassLine) {
  TemporaryFolder folder;
  Program program({"--render-test", "--output", (folder / "missing" / "x.png").string()});
  EXPECT_THAT(program.wait(), AbortedStatus());
  EXPECT_EQ(program.output(), "");
  EXPECT_THAT(program.errors(), HasSubstr("Fatal error: Could not write"));
}

TEST(ProgramTest, TheSelfTestGoesBeforeTheDiagnosis) {
  Program program({"--diagnose", "--render-test", "--output"});
  EXPECT_THAT(program.wait(), SucceededStatus()) << program.errors();
  EXPECT_THAT(program.output(), AnyOf(passAtOne, passAtTwo));
}

TEST(ProgramTest, TheDiagnosisBeginsWithTheTrust) {
  Program program({"--diagnose"});
  EXPECT_THAT(program.wait(), SucceededStatus()) << program.errors();
  EXPECT_THAT(program.output(), AnyOf(StartsWith("Accessibility trusted: true\n"),
                                      StartsWith("Accessibility trusted: false\n")));
}

TEST(ProgramTest, TheOverlayRunsAndReports) {
  using namespace std::chrono_literals;
  TemporaryFolder folder;
  Program program({"--unknown", "--snapshot", (folder / "s.json").string()});
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (!std::filesystem::exists(folder / "status.json") &&
         std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_TRUE(program.running());
  EXPECT_THAT(folder.names(), ElementsAre("status.json"));
  EXPECT_EQ(readText(folder / "status.json"),
            R"({"message":"Waiting for fresh lyrics from Tessaly","stopped":false})");
}

}  // namespace
}  // namespace vellora
