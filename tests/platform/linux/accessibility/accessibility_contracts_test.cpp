#include "contracts/accessibility_contract.h"
#include "platform/linux/accessibility/fake_session.h"
#include "platform/linux/accessibility/linux_accessibility.h"

namespace vellora {
namespace {

class LinuxAccessibility final : public TrustSubject {
 public:
  Accessibility& accessibility() override { return *accessibility_; }
  std::int32_t process() override { return player_->pid(); }
  MusicLayout expected() override {
    return {{0, 0, 1000, 700}, {5, 10, 500, 300}, "A Song", {{"first row", {10, 20, 300, 20}}}};
  }
  void hang() override { player_->process().stop(); }
  void goOn() override { player_->process().resume(); }
  void end() override { player_->process().kill(); }
  void trust(bool trusted) override { setEnabled(bus_, trusted); }

 private:
  static FakeProgram program() {
    // Numbers of AtspiRole: frame, label, scroll pane, push button.
    FakeProgram program;
    program.objects = {
        {.children = {1}},
        {.role = 23, .children = {2, 3}, .extents = std::array{0, 0, 1000, 700}},
        {.role = 29,
         .description = "A Song",
         .identifier = "Music.nowPlaying.title-Music.nowPlaying.subtitle"},
        {.role = 49,
         .description = "Lyrics",
         .children = {4},
         .extents = std::array{5, 10, 500, 300}},
        {.role = 43, .name = "first row", .extents = std::array{10, 20, 300, 20}},
    };
    return program;
  }

  PrivateBus bus_;
  std::unique_ptr<ChildProcess> services_ = startServices(bus_, {true, bus_.address()});
  const std::unique_ptr<FakeProgramProcess> player_ =
      std::make_unique<FakeProgramProcess>(bus_, program());
  const std::shared_ptr<Accessibility> accessibility_ = makeLinuxAccessibility();
};

VELLORA_INSTANTIATE(Linux, Accessibility, LinuxAccessibility);
VELLORA_INSTANTIATE(Linux, Trust, LinuxAccessibility);

}  // namespace
}  // namespace vellora
