#include "main/modes.h"

#include <csignal>
#include <iostream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controller/overlay_delegate.h"
#include "main/lent_platform.h"
#include "main/passing_platform.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::KilledBySignal;
using testing::Not;

constexpr char passLine[] = "PASS native AppKit caption rendering (1200 × 800)\n";

class ModesTest : public testing::Test {
 protected:
  int runTo(std::ostream& output, const Arguments& arguments) {
    return runModes(
        arguments, [this] { return std::make_unique<LentPlatform>(platform); }, output);
  }
  // What the program prints.
  std::string run(const Arguments& arguments) {
    std::ostringstream output;
    EXPECT_EQ(runTo(output, arguments), 0);
    return output.str();
  }
  // The snapshot location with which the overlay runs.
  std::optional<std::filesystem::path> runningLocation(const Arguments& arguments) {
    std::optional<std::filesystem::path> result;
    bool ran = false;
    platform.app.onRun = [&] {
      const auto delegate =
          std::dynamic_pointer_cast<OverlayDelegate>(platform.app.delegate.lock());
      ran = delegate != nullptr;
      if (ran) result = delegate->snapshotURL;
    };
    EXPECT_EQ(run(arguments), "");
    EXPECT_TRUE(ran);
    return result;
  }

  PassingPlatform platform;
};

TEST_F(ModesTest, TheSelfTestPrintsOneLine) {
  EXPECT_EQ(run({"vellora", "--render-test"}), passLine);
  EXPECT_EQ(platform.log.front(), "accessory policy");
}

TEST_F(ModesTest, ThePrintedSizeIsThatOfTheBitmap) {
  PassingPlatform dense(2);
  std::ostringstream output;
  runModes(
      {"vellora", "--render-test"}, [&] { return std::make_unique<LentPlatform>(dense); }, output);
  EXPECT_EQ(output.str(), "PASS native AppKit caption rendering (2400 × 1600)\n");
}

TEST_F(ModesTest, TheSelfTestGoesBeforeTheDiagnosis) {
  EXPECT_EQ(run({"vellora", "--diagnose", "--render-test"}), passLine);
  EXPECT_THAT(platform.log, Not(Contains("running com.apple.Music?")));
}

TEST_F(ModesTest, TheDiagnosisGoesBeforeTheOverlay) {
  TemporaryFolder folder;
  EXPECT_EQ(run({"vellora", "--snapshot", (folder / "s.json").string(), "--diagnose"}),
            "Accessibility trusted: true\n");
  EXPECT_THAT(platform.log, ElementsAre("running com.apple.Music?"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(ModesTest, AModeFlagCountsEvenAsTheValueOfAnotherOrTheProgramPath) {
  EXPECT_EQ(run({"vellora", "--snapshot", "--diagnose"}), "Accessibility trusted: true\n");
  EXPECT_EQ(run({"--diagnose"}), "Accessibility trusted: true\n");
}

TEST_F(ModesTest, TheOverlayIsAnAccessoryWithTheControllerAsItsDelegate) {
  EXPECT_EQ(runningLocation({"vellora", "--snapshot", "/a/s.json"}),
            std::filesystem::path("/a/s.json"));
  EXPECT_THAT(platform.log, ElementsAre("accessory policy", "delegate", "run"));
  EXPECT_TRUE(platform.app.delegate.expired());
}

TEST_F(ModesTest, ARelativeLocationIsTakenFromTheCurrentDirectory) {
  EXPECT_EQ(runningLocation({"vellora", "--snapshot", "a/s.json"}),
            std::filesystem::current_path() / "a/s.json");
}

TEST_F(ModesTest, OfTwoLocationsTheFirstIsUsed) {
  EXPECT_EQ(runningLocation({"vellora", "--snapshot", "/a", "--snapshot", "/b"}),
            std::filesystem::path("/a"));
}

TEST_F(ModesTest, WithoutALocationTheOverlayRunsAllTheSame) {
  for (const Arguments& arguments : {Arguments{"vellora"}, Arguments{"vellora", "--snapshot"},
                                     Arguments{}, Arguments{"vellora", "--output", "x"}}) {
    EXPECT_EQ(runningLocation(arguments), std::nullopt);
  }
}

TEST_F(ModesTest, ALocationThatIsMissingLetsTheOverlayStopItselfAfterFifteenSeconds) {
  platform.app.onRun = [this] {
    platform.app.delegate.lock()->applicationDidFinishLaunching();
    platform.clock->advance(15);
    platform.app.fireTimers();
    EXPECT_EQ(platform.app.terminations, 0);
    platform.clock->advance(0.12);
    platform.app.fireTimers();
  };
  run({"vellora", "--snapshot"});
  EXPECT_EQ(platform.app.terminations, 1);
}

TEST_F(ModesTest, UnknownArgumentsAreIgnored) {
  EXPECT_EQ(runningLocation({"vellora", "--help", "--RENDER-TEST", "-x", "", "--snapshot", "/a",
                             "--diagnoses", "--render-test=1"}),
            std::filesystem::path("/a"));
}

TEST_F(ModesTest, UnknownArgumentsAreIgnoredByTheSelfTestToo) {
  EXPECT_EQ(run({"vellora", "--help", "--render-test", "-x"}), passLine);
}

TEST_F(ModesTest, ThePictureGoesToTheFirstOutput) {
  TemporaryFolder folder;
  EXPECT_EQ(run({"vellora", "--output", (folder / "a.png").string(), "--render-test", "--output",
                 (folder / "b.png").string()}),
            passLine);
  EXPECT_THAT(folder.names(), ElementsAre("a.png"));
}

TEST_F(ModesTest, OutputAsTheLastArgumentIsIgnored) {
  EXPECT_EQ(run({"vellora", "--render-test", "--output"}), passLine);
}

TEST_F(ModesTest, APictureThatCannotBeWrittenEndsTheProcessBeforeThePassLine) {
  TemporaryFolder folder;
  const Arguments arguments = {"vellora", "--render-test", "--output",
                               (folder / "missing" / "a.png").string()};
  // Standard error gets the lines too, so that what was printed before the end can be seen.
  EXPECT_EXIT(runTo(std::cerr, arguments), KilledBySignal(SIGABRT),
              testing::AllOf(testing::StartsWith("Fatal error: Could not write"),
                             Not(testing::HasSubstr("PASS"))));
}

}  // namespace
}  // namespace vellora
