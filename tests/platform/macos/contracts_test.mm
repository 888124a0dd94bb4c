#include <cmath>
#include <string>
#include <utility>
#include <vector>

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include "contracts/application_contract.h"
#include "contracts/caption_painter_contract.h"
#include "contracts/music_scripting_contract.h"
#include "contracts/status_item_contract.h"
#include "contracts/system_subjects.h"
#include "contracts/workspace_contract.h"
#import "platform/macos/convert.h"
#import "platform/macos/drawing.h"
#import "platform/macos/panel.h"
#import "platform/macos/status_item.h"
#import "platform/macos/view.h"

namespace vellora {
namespace {

class MacApplication final : public TimerSubject {
 public:
  MacApplication() { application(); }  // the system's own too
  Application& application() override { return platform_->application(); }
  void endApplication() override { platform_.reset(); }
  bool loopUntil(const std::function<bool()>& condition) override {
    NSDate* const deadline = [NSDate dateWithTimeIntervalSinceNow:20];
    while (!condition()) {
      if (deadline.timeIntervalSinceNow < 0) return false;
      [NSRunLoop.currentRunLoop runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
    }
    return true;
  }
  // What is handed over now comes after all that was before.
  void settle() override {
    const auto reached = std::make_shared<bool>(false);
    dispatch_async(dispatch_get_main_queue(), ^{
      *reached = true;
    });
    EXPECT_TRUE(loopUntil([&] { return *reached; }));
  }
  double elapsed() const override { return NSProcessInfo.processInfo.systemUptime; }
  void beBusy(double seconds) override { [NSThread sleepForTimeInterval:seconds]; }
  void open(const std::vector<std::string>& urls) override {
    NSMutableArray<NSURL*>* const list = [[NSMutableArray alloc] init];
    for (const std::string& url : urls) {
      NSURL* const made = [NSURL URLWithString:toNSString(url)];
      ASSERT_TRUE(made != nil);
      if (made != nil) [list addObject:made];
    }
    NSApplication* const shared = NSApplication.sharedApplication;
    [shared.delegate application:shared openURLs:list];
  }
  std::vector<std::string> urls() const override {
    return {"tessaly-overlay://x?snapshot=/a%20b/Vellora/snapshot.json", "tessaly-overlay:?a=+"};
  }

 private:
  std::unique_ptr<Platform> platform_ = makePlatform();
};

class MacStatusItem final : public StatusItemSubject {
 public:
  StatusItem& item() override { return *item_; }
  std::string shownTitle() override { return fromNSString(system_.button.title); }
  std::string shownToolTip() override { return fromNSString(system_.button.toolTip); }
  std::vector<Entry> shownMenu() override {
    [system_.menu update];
    std::vector<Entry> entries;
    for (NSMenuItem* entry in system_.menu.itemArray) {
      const bool separator = entry.separatorItem;
      entries.push_back({separator, separator ? "" : fromNSString(entry.title),
                         !separator && entry.enabled, fromNSString(entry.keyEquivalent)});
    }
    return entries;
  }
  void choose(std::size_t entry) override {
    [system_.menu update];
    [system_.menu performActionForItemAtIndex:static_cast<NSInteger>(entry)];
  }

 private:
  NSApplication* const application_ = [NSApplication sharedApplication];
  NSStatusItem* const system_ =
      [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
  const std::unique_ptr<StatusItem> item_ = makeMenuBarItem(system_);
};

// Scripts that talk to no other program: no permission is asked for.
class MacMusicScripting final : public MusicScriptingSubject {
 public:
  MusicScripting& scripting() override { return *scripting_; }
  ScriptRequest answeredRequest() override {
    return {"property n : 0\nset n to n + 1\nreturn \"日本語\" & linefeed & n", {}};
  }
  std::string answer() override { return "日本語\n1"; }
  ScriptRequest refusedRequest() override {
    return {"error \"the needle is stuck\" number 77", {}};
  }
  std::string refusal() override { return "the needle is stuck"; }

 private:
  const std::unique_ptr<Platform> platform_ = makePlatform();
  const std::unique_ptr<MusicScripting> scripting_ = platform_->makeMusicScripting();
};

// The desktop as it is: the session's own file manager always runs.
class MacWorkspace final : public WorkspaceSubject {
 public:
  Workspace& workspace() override { return *workspace_; }
  Program inFront() override { return programOf(NSWorkspace.sharedWorkspace.frontmostApplication); }
  std::vector<Program> running() override {
    std::vector<Program> programs;
    for (NSRunningApplication* each in NSWorkspace.sharedWorkspace.runningApplications) {
      if ([each.bundleIdentifier isEqualToString:@"com.apple.finder"]) {
        programs.push_back(programOf(each));
      }
    }
    return programs;
  }
  std::optional<double> primaryHeight() override { return NSScreen.screens[0].frame.size.height; }
  std::optional<double> mainScale() override { return NSScreen.mainScreen.backingScaleFactor; }

 private:
  static Program programOf(NSRunningApplication* application) {
    NSString* const identifier = application.bundleIdentifier;
    return {identifier == nil ? std::nullopt : std::optional(fromNSString(identifier)),
            application.processIdentifier};
  }

  NSApplication* const application_ = [NSApplication sharedApplication];
  const std::unique_ptr<Platform> platform_ = makePlatform();
  const std::unique_ptr<Workspace> workspace_ = platform_->makeWorkspace();
};

class MacPanel final : public PanelSubject {
 public:
  NativeView& view() override { return view_; }
  Panel& panel() override { return panel_; }
  bool isShown() override { return view_.view().window.visible; }
  Rect shownFrame() override { return fromNSRect(view_.view().window.frame); }

 private:
  NSApplication* const application_ = [NSApplication sharedApplication];
  AppKitView view_;
  AppKitPanel panel_;
};

class MacPictures final : public PictureSubject {
 public:
  CaptionPainter& painter() override { return *painter_; }
  Picture picture(const CaptionImage& image) override {
    NSBitmapImageRep* const bitmap =
        [[NSBitmapImageRep alloc] initWithCGImage:static_cast<const AppKitImage&>(image).pixels()];
    std::vector<std::uint32_t> pixels;
    for (NSInteger y = 0; y < bitmap.pixelsHigh; ++y) {
      for (NSInteger x = 0; x < bitmap.pixelsWide; ++x) {
        NSColor* const color = [bitmap colorAtX:x y:y];
        std::uint32_t pixel = level(color.alphaComponent);
        for (const double channel :
             {color.redComponent, color.greenComponent, color.blueComponent}) {
          pixel = pixel << 8 | level(channel * color.alphaComponent);
        }
        pixels.push_back(pixel);
      }
    }
    return {bitmap.pixelsWide, bitmap.pixelsHigh, std::move(pixels)};
  }

 private:
  static std::uint32_t level(double channel) {
    return static_cast<std::uint32_t>(std::lround(channel * 255));
  }

  const std::unique_ptr<CaptionPainter> painter_ = makeAppKitPainter();
};

VELLORA_INSTANTIATE(Mac, Platform, SystemPlatform);
VELLORA_INSTANTIATE(Mac, Clock, SystemClockSubject);
VELLORA_INSTANTIATE(Mac, Application, MacApplication);
VELLORA_INSTANTIATE(Mac, Timer, MacApplication);
VELLORA_INSTANTIATE(Mac, StatusItem, MacStatusItem);
VELLORA_INSTANTIATE(Mac, MusicScripting, MacMusicScripting);
VELLORA_INSTANTIATE(Mac, Workspace, MacWorkspace);
// A test cannot change what is in front, nor take the screens away.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ChangingWorkspaceContract);
VELLORA_INSTANTIATE(Mac, View, MacPanel);
VELLORA_INSTANTIATE(Mac, Panel, MacPanel);
VELLORA_INSTANTIATE(Mac, Drawing, SystemDrawing);
VELLORA_INSTANTIATE(Mac, CaptionPainter, MacPictures);
VELLORA_INSTANTIATE(Mac, Picture, MacPictures);

}  // namespace
}  // namespace vellora
