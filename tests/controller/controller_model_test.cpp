#include "controller/model/controller_model.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "controller/model/real_controller.h"
#include "controller/model/step.h"
#include "support/temporary_folder.h"

namespace vellora::model {
namespace {

constexpr int longestRun = 400;  // steps; the mean is half of it

// Ticks and readings more often than what they find: most worlds stay for a few of them.
rc::Gen<Step> anyStep() {
  const auto event = rc::gen::map(rc::gen::inRange(0, eventCount + 64), [](int number) {
    if (number < eventCount) return static_cast<Event>(number);
    constexpr Event frequent[] = {Event::tick, Event::read, Event::finishReading, Event::tick,
                                  Event::tick, Event::read, Event::finishReading, Event::allIsWell};
    return frequent[static_cast<std::size_t>(number - eventCount) % std::size(frequent)];
  });
  return rc::gen::map(
      rc::gen::tuple(event, rc::gen::inRange(0, mostOfStep), rc::gen::inRange(0, mostOfStep)),
      [](const std::tuple<Event, int, int>& parts) {
        return Step{std::get<0>(parts), std::get<1>(parts), std::get<2>(parts)};
      });
}

// The model and the controller, to which the same happens.
class Pair {
 public:
  explicit Pair(RealController& real) : real_(real) {
    real_.begin(world_);
    startAgain({Event::startAgain, 0, 0});
  }

  // What is different after the step; empty when nothing is.
  std::string take(const Step& step) {
    model_->scripts.clear();
    model_->trustRequests = model_->terminations = 0;
    const std::size_t at = model_->folder.value_or(0);
    const bool isChange = change(world_, step, at);
    real_.follow(world_, step, at);
    if (isChange) return "";
    act(step);
    return real_.difference(*model_, world_, model_->folder.value_or(0));
  }

  const World& world() const { return world_; }
  const ControllerModel& model() const { return *model_; }

 private:
  void act(const Step& step) {
    switch (step.event) {
      case Event::tick:  // no timer before the launch
        if (launched_) model_->tick();
        return real_.tick();
      case Event::read:
        model_->read();
        return real_.read(world_);
      case Event::finishReading:
        model_->finishReading();
        return real_.finishReading();
      case Event::openUrl: {
        const OpenedUrl url = openedUrl(step);
        if (url.folder) model_->openFolder(*url.folder);
        return real_.openUrl(url);
      }
      case Event::chooseAllow:
        if (!hasItem_) return;
        model_->allow();
        return real_.choose(2);
      case Event::chooseStop:
        if (!hasItem_) return;
        model_->stop();
        return real_.choose(3);
      case Event::launch:
        return launch();
      default:
        return startAgain(step);
    }
  }

  void startAgain(const Step& step) {
    std::optional<std::size_t> folder;
    if (step.a != 1) folder = 0;
    placeForItem_ = step.a != 2;
    button_ = step.a != 3;
    launched_ = hasItem_ = false;
    model_.emplace(world_, folder);
    real_.start(folder, placeForItem_, button_);
    if (step.b < 12) {
      real_.follow(world_, step, 0);
      launch();
    }
  }

  void launch() {
    if (launched_) return;
    launched_ = true;
    hasItem_ = placeForItem_;
    model_->launch(placeForItem_ && button_);
    real_.launch();
  }

  World world_;
  std::optional<ControllerModel> model_;
  RealController& real_;
  bool placeForItem_ = true;
  bool button_ = true;
  bool launched_ = false;
  bool hasItem_ = false;
};

class ControllerModelTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    // In memory where there is such a place: each status line is synced to the disk.
    if (std::filesystem::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
    // The same worlds each time, unless somebody asks for others or for one to be shown again.
    setenv("RC_PARAMS", "seed=1 max_success=" VELLORA_MODEL_RUNS, 0);
  }
};

TEST_F(ControllerModelTest, TheControllerDoesWhatThePlainModelDoesWhateverHappens) {
  const TemporaryFolder folder;
  RealController real(folder.path());
  std::size_t steps = 0;
  std::set<std::string> lines;
  std::size_t shows = 0;
  std::size_t ends = 0;
  const bool isSame = rc::check("the controller and its model", [&] {
    const auto run = *rc::gen::resize(longestRun, rc::gen::container<std::vector<Step>>(anyStep()));
    Pair pair(real);
    for (std::size_t i = 0; i < run.size(); ++i) {
      const bool wasShown = pair.model().panelShown;
      const std::string difference = pair.take(run[i]);
      ++steps;
      if (!difference.empty()) RC_FAIL("step " + std::to_string(i) + ": " + difference);
      lines.insert(pair.model().statusMessage);
      if (pair.model().panelShown && !wasShown) ++shows;
      ends += pair.model().terminations;
    }
    const std::string difference = real.differenceOnDisk(pair.world());
    if (!difference.empty()) RC_FAIL(difference);
  });
  EXPECT_TRUE(isSame);
  // The walk went everywhere: every line but those that count rows, and some of these.
  EXPECT_GT(steps, 190U * std::stoul(VELLORA_MODEL_RUNS));
  EXPECT_GT(lines.size(), 11U);
  EXPECT_GT(shows, steps / 200);
  EXPECT_GT(ends, steps / 1000);
  std::printf("%zu steps, %zu status lines, %zu times shown, %zu ends\n", steps, lines.size(),
              shows, ends);
}

}  // namespace
}  // namespace vellora::model
