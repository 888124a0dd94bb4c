#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/wayland/locator/fake_hyprland.h"
#include "platform/linux/wayland/locator/fake_i3.h"
#include "platform/linux/wayland/locator/window_locator.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

// An environment without any sign of a compositor, and without a bus.
class MakeWindowLocatorTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const name :
         {"SWAYSOCK", "I3SOCK", "HYPRLAND_INSTANCE_SIGNATURE", "XDG_RUNTIME_DIR",
          "XDG_CURRENT_DESKTOP", "KDE_SESSION_VERSION", "DBUS_SESSION_BUS_ADDRESS"}) {
      const char* const value = std::getenv(name);
      before_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
      unsetenv(name);
    }
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
  }
  void TearDown() override {
    for (const auto& [name, value] : before_) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
  }
  static std::string made() {
    const auto locator = makeWindowLocator();
    return locator ? locator->name() : "none";
  }

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(MakeWindowLocatorTest, NoneFitsWhereNothingTells) { EXPECT_EQ(made(), "none"); }

TEST_F(MakeWindowLocatorTest, ASocketThatAnswersCountsBeforeTheDesktopsName) {
  const TemporaryFolder folder;
  const std::string path = folder / "ipc.sock";
  setenv("XDG_CURRENT_DESKTOP", "sway:KDE", 1);
  setenv("SWAYSOCK", path.c_str(), 1);
  const std::string withoutSocket = made();
  const FakeI3 compositor(path);
  EXPECT_NE(made(), withoutSocket);
  EXPECT_NE(made().find("IPC"), std::string::npos) << made();
}

TEST_F(MakeWindowLocatorTest, HyprlandIsFoundByItsSignatureWhereItAnswers) {
  const TemporaryFolder runtime;
  setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
  setenv("HYPRLAND_INSTANCE_SIGNATURE", "0123abcd_1", 1);
  EXPECT_EQ(made(), "none");
  std::filesystem::create_directories(runtime / "hypr/0123abcd_1");
  const FakeHyprland compositor(runtime / "hypr/0123abcd_1");
  EXPECT_EQ(made(), "Hyprland's sockets");
}

TEST_F(MakeWindowLocatorTest, PlasmaFiveHasOneAndPlasmaSixNot) {
  setenv("XDG_CURRENT_DESKTOP", "KDE", 1);
  EXPECT_NE(made().find("KWin"), std::string::npos) << made();
  setenv("KDE_SESSION_VERSION", "5", 1);
  EXPECT_NE(made().find("KWin"), std::string::npos) << made();
  setenv("KDE_SESSION_VERSION", "6", 1);
  EXPECT_EQ(made(), "none");
}

}  // namespace
}  // namespace vellora
