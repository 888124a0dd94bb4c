#import "platform/macos/application.h"

#include <atomic>
#include <utility>

#import <AppKit/AppKit.h>

#import "platform/macos/convert.h"

// Passes on what the system tells the program; holds the core's delegate weakly.
@interface VelloraApplicationDelegate : NSObject <NSApplicationDelegate>
- (void)setDelegate:(std::weak_ptr<vellora::ApplicationDelegate>)delegate;
@end

@implementation VelloraApplicationDelegate {
  std::weak_ptr<vellora::ApplicationDelegate> _delegate;
}

- (void)setDelegate:(std::weak_ptr<vellora::ApplicationDelegate>)delegate {
  _delegate = std::move(delegate);
}

- (void)applicationDidFinishLaunching:(NSNotification*)__unused notification {
  if (const auto delegate = _delegate.lock()) delegate->applicationDidFinishLaunching();
}

- (void)application:(NSApplication*)__unused application openURLs:(NSArray<NSURL*>*)urls {
  std::vector<std::string> texts;
  // The text as it was given: a relative URL keeps its own part.
  for (NSURL* url in urls) texts.push_back(vellora::fromNSString(url.relativeString));
  if (const auto delegate = _delegate.lock()) delegate->applicationOpen(texts);
}

// Nothing is restored; the system complains of a program that does not say so.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)__unused application {
  return YES;
}

@end

namespace vellora {

namespace {

class RunLoopTimer final : public Timer {
 public:
  explicit RunLoopTimer(NSTimer* timer) : timer(timer) {}
  ~RunLoopTimer() override { [timer invalidate]; }

 private:
  NSTimer* const timer;
};

class DispatchQueue final : public SerialQueue {
 public:
  explicit DispatchQueue(std::string_view label)
      : queue(dispatch_queue_create(std::string(label).c_str(),
                                    dispatch_queue_attr_make_with_qos_class(
                                        DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INTERACTIVE, 0))),
        open(std::make_shared<std::atomic<bool>>(true)) {}
  ~DispatchQueue() override { *open = false; }

  void async(std::function<void()> work) override {
    const std::shared_ptr<std::atomic<bool>> stillOpen = open;
    dispatch_async(queue, ^{
      @autoreleasepool {
        if (*stillOpen) work();
      }
    });
  }

 private:
  const dispatch_queue_t queue;
  const std::shared_ptr<std::atomic<bool>> open;
};

class AppKitApplication final : public Application {
 public:
  AppKitApplication()
      : application([NSApplication sharedApplication]),
        delegate([[VelloraApplicationDelegate alloc] init]) {}

  void setAccessoryPolicy() override {
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
  }

  void setDelegate(std::weak_ptr<ApplicationDelegate> coreDelegate) override {
    [delegate setDelegate:std::move(coreDelegate)];
    application.delegate = delegate;
  }

  // Without a window on the screen the system would let the program nap: ticks would come seconds
  // apart, and a companion's command would wait as long. The Mac may still go to sleep.
  void run() override {
    const id<NSObject> activity = [NSProcessInfo.processInfo
        beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                          reason:@"Following a song for a lyrics companion"];
    [application run];
    [NSProcessInfo.processInfo endActivity:activity];
  }

  std::unique_ptr<Timer> scheduleTimer(double interval, std::function<void()> fire) override {
    // A pool of its own: the event loop's is emptied by events, and a program in the background may
    // see none for hours.
    NSTimer* const timer = [NSTimer scheduledTimerWithTimeInterval:interval
                                                           repeats:YES
                                                             block:^(NSTimer* __unused fired) {
                                                               @autoreleasepool {
                                                                 fire();
                                                               }
                                                             }];
    return std::make_unique<RunLoopTimer>(timer);
  }

  std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override {
    return std::make_unique<DispatchQueue>(label);
  }

  std::function<void(std::function<void()>)> mainHandOff() override {
    return [life = std::weak_ptr<const bool>(alive)](std::function<void()> work) {
      const std::weak_ptr<const bool> stillAlive = life;
      if (stillAlive.expired()) return;
      dispatch_async(dispatch_get_main_queue(), ^{
        @autoreleasepool {
          if (!stillAlive.expired()) work();
        }
      });
    };
  }

  void terminate() override { [application terminate:nil]; }

 private:
  NSApplication* const application;
  // The application holds its delegate weakly.
  VelloraApplicationDelegate* const delegate;
  // Lives as long as this object: what the hand-off looks at.
  const std::shared_ptr<const bool> alive = std::make_shared<const bool>(true);
};

}  // namespace

std::unique_ptr<Application> makeAppKitApplication() {
  return std::make_unique<AppKitApplication>();
}

}  // namespace vellora
