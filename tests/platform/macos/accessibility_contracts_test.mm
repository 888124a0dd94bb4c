#include <csignal>
#include <memory>

#include <gtest/gtest.h>

#include "contracts/accessibility_contract.h"
#import "platform/macos/accessibility.h"
#include "reading_window_process.h"

namespace vellora {
namespace {

class MacAccessibility final : public AccessibilitySubject {
 public:
  MacAccessibility() {
    EXPECT_TRUE(accessibility_->isTrusted())
        << "The program that runs these tests, a terminal for instance, may not read other "
           "programs' windows: allow it in System Settings → Privacy & Security → Accessibility, "
           "then start it anew.";
  }
  Accessibility& accessibility() override { return *accessibility_; }
  std::int32_t process() override { return process_; }
  MusicLayout expected() override { return expected_; }
  void hang() override { ASSERT_EQ(kill(process_, SIGSTOP), 0); }
  void goOn() override { ASSERT_EQ(kill(process_, SIGCONT), 0); }
  void end() override { window_.reset(); }

 private:
  const std::shared_ptr<Accessibility> accessibility_ = makeAxAccessibility();
  std::unique_ptr<ReadingWindowProcess> window_ = std::make_unique<ReadingWindowProcess>();
  const std::int32_t process_ = window_->pid();
  const MusicLayout expected_ = window_->expected();
};

VELLORA_INSTANTIATE(Mac, Accessibility, MacAccessibility);
// Only the user withdraws the trust.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(TrustContract);

}  // namespace
}  // namespace vellora
