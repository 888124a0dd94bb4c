// Where windows are on KWin: what the accessibility room tells against what is on the screen.
#include "platform/linux/wayland/places/kwin_places.h"

namespace vellora {
namespace {

TEST_F(KWinPlaces, OfGtk3WithoutAShadow) {
  start(gtk3(false));
  goThroughPlaces();
}

TEST_F(KWinPlaces, OfGtk3WithAShadow) {
  start(gtk3(true));
  goThroughPlaces();
}

TEST_F(KWinPlaces, OfGtk4WithAShadow) {
  start(gtk4(true));
  goThroughPlaces();
}

TEST_F(KWinPlaces, OfQt5) {
  start(qt());
  goThroughPlaces();
}

TEST_F(KWinPlaces, OfAProgramUnderXwayland) {
  start(gtk3(false), true);
  goThroughPlaces();
}

TEST_F(KWinPlaces, AMinimisedWindowIsNotInFront) {
  start(gtk3(true));
  command("w.minimized = true;");
  EXPECT_TRUE(eventually([this] { return front() == 0; }));
  EXPECT_EQ(workspace->runningApplications(musicPlayer.identifier).size(), 1U);
  command("workspace.activeClient = workspace.clientList()[0];");
  EXPECT_TRUE(eventually([this] { return front() == program->pid(); }));
}

}  // namespace
}  // namespace vellora
