#import "platform/macos/application.h"

#include <future>
#include <memory>
#include <string>

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(ApplicationTest, IsNoProgramOfTheDock) {
  makeAppKitApplication()->setAccessoryPolicy();
  EXPECT_EQ(NSApp.activationPolicy, NSApplicationActivationPolicyAccessory);
}

TEST(ApplicationTest, RestoresItsStateSecurelyOnly) {
  const auto application = makeAppKitApplication();
  application->setDelegate({});
  const id<NSApplicationDelegate> delegate = NSApp.delegate;
  ASSERT_TRUE([delegate respondsToSelector:@selector(applicationSupportsSecureRestorableState:)]);
  EXPECT_TRUE([delegate applicationSupportsSecureRestorableState:NSApp]);
}

TEST(ApplicationTest, AQueueHasItsLabelAndIsUrgent) {
  const auto queue = makeAppKitApplication()->makeSerialQueue("Vellora.test");
  const auto found = std::make_shared<std::promise<std::string>>();
  queue->async([found] {
    const bool urgent = qos_class_self() == QOS_CLASS_USER_INTERACTIVE;
    found->set_value(dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL) +
                     std::string(urgent ? ", urgent" : ""));
  });
  EXPECT_EQ(found->get_future().get(), "Vellora.test, urgent");
}

}  // namespace
}  // namespace vellora
