// Where X11 programs' windows are on KWin at the scale 2.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/linux/wayland/places/kwin_places.h"

namespace vellora {
namespace {

class ScaledKWinPlaces : public KWinPlaces {
 protected:
  ScaledKWinPlaces() { scale = 2; }

  // "Apply scaling themselves", as the desktop's settings call it.
  void letX11ProgramsScaleThemselves() {
    const std::filesystem::path settings = std::getenv("XDG_CONFIG_HOME");
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "kwinrc") << "[Xwayland]\nScale=2\n";
    const GVariantPtr changed(
        g_variant_ref_sink(g_variant_new_parsed("({'Xwayland': [@ay [83, 99, 97, 108, 101]]},)")));
    ASSERT_TRUE(g_dbus_connection_emit_signal(bus.get(), nullptr, "/kwinrc",
                                              "org.kde.kconfig.notify", "ConfigChanged",
                                              changed.get(), nullptr));
  }
  void goThroughFewPlaces() {
    ASSERT_TRUE(eventuallyRight());
    command("w.frameGeometry = {x: 101, y: 57, width: 400, height: 300};");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x < 120; }));
  }
};

TEST_F(ScaledKWinPlaces, OfAnX11ProgramThatTheSystemScales) {
  isSmoothed = true;
  start(gtk3(false), true);
  goThroughFewPlaces();
}

TEST_F(ScaledKWinPlaces, OfAnX11ProgramThatIsLeftToScaleItselfAndDoesNot) {
  letX11ProgramsScaleThemselves();
  start(gtk3(false), true);
  goThroughFewPlaces();
}

TEST_F(ScaledKWinPlaces, OfAnX11ProgramThatScalesItself) {
  letX11ProgramsScaleThemselves();
  setenv("GDK_SCALE", "2", 1);
  start(gtk3(false), true);
  goThroughFewPlaces();
}

}  // namespace
}  // namespace vellora
