#import "platform/macos/workspace.h"

#import <AppKit/AppKit.h>

#import "platform/macos/convert.h"

namespace vellora {

namespace {

// Keeps the system's own object: its process identifier is asked for where it is needed.
class AppKitApplication final : public RunningApplication {
 public:
  explicit AppKitApplication(NSRunningApplication* application) : application(application) {}

  std::optional<std::string> bundleIdentifier() const override {
    @autoreleasepool {
      NSString* const identifier = application.bundleIdentifier;
      if (identifier == nil) return std::nullopt;
      return fromNSString(identifier);
    }
  }

  std::int32_t processIdentifier() const override { return application.processIdentifier; }

 private:
  NSRunningApplication* const application;
};

class AppKitWorkspace final : public Workspace {
 public:
  std::shared_ptr<const RunningApplication> frontmostApplication() override {
    @autoreleasepool {
      NSRunningApplication* const application = NSWorkspace.sharedWorkspace.frontmostApplication;
      if (application == nil) return nullptr;
      return std::make_shared<AppKitApplication>(application);
    }
  }

  std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) override {
    @autoreleasepool {
      std::vector<std::shared_ptr<const RunningApplication>> result;
      NSArray<NSRunningApplication*>* const applications = [NSRunningApplication
          runningApplicationsWithBundleIdentifier:toNSString(bundleIdentifier)];
      for (NSRunningApplication* application in applications) {
        result.push_back(std::make_shared<AppKitApplication>(application));
      }
      return result;
    }
  }

  std::optional<double> primaryScreenHeight() override {
    @autoreleasepool {
      NSScreen* const first = NSScreen.screens.firstObject;
      if (first == nil) return std::nullopt;
      return first.frame.size.height;
    }
  }

  std::optional<double> mainScreenScale() override {
    @autoreleasepool {
      NSScreen* const main = NSScreen.mainScreen;
      if (main == nil) return std::nullopt;
      return main.backingScaleFactor;
    }
  }
};

}  // namespace

std::unique_ptr<Workspace> makeAppKitWorkspace() { return std::make_unique<AppKitWorkspace>(); }

}  // namespace vellora
