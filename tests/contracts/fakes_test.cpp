#include <memory>
#include <utility>

#include "contracts/accessibility_contract.h"
#include "contracts/application_contract.h"
#include "contracts/caption_painter_contract.h"
#include "contracts/clock_contract.h"
#include "contracts/platform_contract.h"
#include "contracts/status_item_contract.h"
#include "contracts/view_contract.h"
#include "contracts/workspace_contract.h"
#include "support/fake_platform.h"

// The fakes are held against the contracts of what they stand in for, as far as they have behaviour
// of their own: none has a clock for its timers, and a player answers what the test has it answer.
namespace vellora {
namespace {

class FakePlatformSubject final : public PlatformSubject {
 public:
  Platform& platform() override { return platform_; }

 private:
  FakePlatform platform_;
};

class FakeClockSubject final : public ClockSubject {
 public:
  const Clock& clock() override {
    clock_.advance(1.625);
    return clock_;
  }
  double truth() const override { return 1'700'000'001.625; }

 private:
  FakeClock clock_;
};

// In each round of its loop every timer fires.
class FakeApplicationSubject final : public ApplicationSubject {
 public:
  Application& application() override { return *application_; }
  void endApplication() override { application_.reset(); }
  bool loopUntil(const std::function<bool()>& condition) override {
    for (int round = 0; round < 100 && !condition(); ++round) settle();
    return condition();
  }
  void settle() override {
    if (!application_) return;
    application_->fireTimers();
    application_->runBackground();
    application_->runMain();
  }
  void open(const std::vector<std::string>& urls) override {
    if (const auto delegate = application_->delegate.lock()) delegate->applicationOpen(urls);
  }
  std::vector<std::string> urls() const override { return {"tessaly-overlay:?a=+", "", "文 ü"}; }
  // All its work waits until the test has it run.
  std::function<void()> occupy(SerialQueue&) override {
    return [] {};
  }

 private:
  Log log_;
  std::unique_ptr<FakeApplication> application_ = std::make_unique<FakeApplication>(log_);
};

template <bool withButton>
class FakeStatusItemSubject final : public StatusItemSubject {
 public:
  StatusItem& item() override { return item_; }
  std::string shownTitle() override { return item_.title; }
  std::string shownToolTip() override { return item_.toolTip; }
  std::vector<Entry> shownMenu() override {
    std::vector<Entry> entries;
    for (const MenuEntry& entry : item_.menu) {
      entries.push_back(
          {entry.separator, entry.title, static_cast<bool>(entry.action), entry.keyEquivalent});
    }
    return entries;
  }
  void choose(std::size_t entry) override {
    const auto action = item_.menu.at(entry).action;
    if (action) action();
  }

 private:
  Log log_;
  FakeStatusItem item_{log_, withButton};
};

class FakeWorkspaceSubject final : public WorkspaceSubject, public ChangingWorkspaceSubject {
 public:
  Workspace& workspace() override { return workspace_; }
  Program inFront() override {
    bringToFront(Program{"org.example.Editor", 30});
    return {"org.example.Editor", 30};
  }
  std::vector<Program> running() override {
    for (const auto& [name, process] :
         {std::pair("com.apple.Music", 20), {"org.example.Editor", 30}, {"com.apple.Music", 10}}) {
      workspace_.running.push_back(std::make_shared<FakeRunningApplication>(name, process));
    }
    return {{"com.apple.Music", 20}, {"com.apple.Music", 10}};
  }
  std::optional<double> primaryHeight() override { return 1000; }
  std::optional<double> mainScale() override { return 1; }

  void bringToFront(const std::optional<Program>& program) override {
    workspace_.frontmost =
        program ? std::make_shared<FakeRunningApplication>(program->identifier, program->process)
                : nullptr;
  }
  void losePrograms() override { bringToFront(std::nullopt); }
  void loseScreens() override {
    workspace_.primaryHeight = std::nullopt;
    workspace_.mainScale = std::nullopt;
  }

 private:
  Log log_;
  FakeWorkspace workspace_{log_};
};

class FakePanelSubject final : public PanelSubject {
 public:
  NativeView& view() override { return view_; }
  Panel& panel() override { return panel_; }
  bool isShown() override { return panel_.visible; }
  Rect shownFrame() override { return panel_.lastFrame; }

 private:
  Log log_;
  FakeNativeView view_{log_};
  FakePanel panel_{log_};
};

class FakePainterSubject final : public CaptionPainterSubject {
 public:
  CaptionPainter& painter() override { return painter_; }

 private:
  Log log_;
  FakePainter painter_{log_};
};

class FakeAccessibilitySubject final : public TrustSubject {
 public:
  FakeAccessibilitySubject() {
    auto title = fakeElement();
    title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle").description("A Song");
    auto row = fakeElement();
    row->role("AXButton").title("first row").frame({10, 20, 300, 20});
    auto lyrics = fakeElement();
    lyrics->role("AXScrollArea").description("Lyrics").frame({5, 10, 500, 300}).children({row});
    window_->role("AXWindow").set(AccessibilityAttribute::minimized, false);
    window_->frame({0, 0, 1000, 700}).children({title, lyrics});
    accessibility_.applications[process()] = application_;
    goOn();
  }
  Accessibility& accessibility() override { return accessibility_; }
  std::int32_t process() override { return 4711; }
  MusicLayout expected() override {
    return {{0, 0, 1000, 700}, {5, 10, 500, 300}, "A Song", {{"first row", {10, 20, 300, 20}}}};
  }
  void hang() override { application_->windows({}).values.clear(); }
  void goOn() override { application_->windows({window_}); }
  void end() override { hang(); }
  void trust(bool trusted) override { accessibility_.trusted = trusted; }

 private:
  FakeAccessibility accessibility_;
  std::shared_ptr<FakeElement> window_ = fakeElement();
  std::shared_ptr<FakeElement> application_ = fakeElement();
};

VELLORA_INSTANTIATE(Fake, Platform, FakePlatformSubject);
VELLORA_INSTANTIATE(Fake, Clock, FakeClockSubject);
VELLORA_INSTANTIATE(Fake, Application, FakeApplicationSubject);
VELLORA_INSTANTIATE(Fake, StatusItem, FakeStatusItemSubject<true>);
VELLORA_INSTANTIATE(FakeWithoutButton, StatusItem, FakeStatusItemSubject<false>);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(TimerContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(MusicScriptingContract);
VELLORA_INSTANTIATE(Fake, Workspace, FakeWorkspaceSubject);
VELLORA_INSTANTIATE(Fake, ChangingWorkspace, FakeWorkspaceSubject);
VELLORA_INSTANTIATE(Fake, View, FakePanelSubject);
VELLORA_INSTANTIATE(Fake, Panel, FakePanelSubject);
VELLORA_INSTANTIATE(Fake, CaptionPainter, FakePainterSubject);
VELLORA_INSTANTIATE(Fake, Accessibility, FakeAccessibilitySubject);
VELLORA_INSTANTIATE(Fake, Trust, FakeAccessibilitySubject);

}  // namespace
}  // namespace vellora
