#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/utsname.h>

#include "contracts/caption_painter_contract.h"
#include "contracts/system_subjects.h"
#include "contracts/workspace_contract.h"
#include "platform/linux/drawing/cairo_picture.h"
#include "platform/linux/drawing/pango_painter.h"
#include "platform/linux/x11/panel_fixture.h"
#include "platform/platform.h"

namespace vellora {
namespace {

// The test stands in for the window manager.
class LinuxWorkspace final : public WorkspaceSubject, public ChangingWorkspaceSubject {
 public:
  LinuxWorkspace() {
    unsetenv("GDK_SCALE");
    setenv("DISPLAY", server_.display().c_str(), 1);
    workspace_ = platform_->makeWorkspace();
  }
  Workspace& workspace() override { return *workspace_; }

  Program inFront() override {
    const Program editor{"org.example.Editor", 30};
    bringToFront(editor);
    return editor;
  }
  std::vector<Program> running() override {
    std::vector<xcb_window_t> listed;
    for (const Program& program :
         {Program{"com.apple.Music", 20},
          {"org.example.Editor", 30},
          {"com.apple.Music", 10},
          {"com.apple.Music", 20}}) {  // the last one is another window of the first
      listed.push_back(makeWindow(program));
    }
    makeWindow({"com.apple.Music", 40});  // in no list
    client_.setWindows(client_.root(), "_NET_CLIENT_LIST", listed);
    return {{"com.apple.Music", 20}, {"com.apple.Music", 10}};
  }
  std::optional<double> primaryHeight() override { return 800; }
  std::optional<double> mainScale() override { return 1; }

  void bringToFront(const std::optional<Program>& program) override {
    client_.setWindows(client_.root(), "_NET_ACTIVE_WINDOW",
                       {program ? makeWindow(*program) : xcb_window_t(XCB_WINDOW_NONE)});
  }
  void losePrograms() override {
    for (const xcb_window_t window : windows_) client_.destroyWindow(window);
  }
  void loseScreens() override { server_.end(SIGKILL); }

 private:
  // With the properties of a program, as a toolkit sets them.
  xcb_window_t makeWindow(const Program& program) {
    const xcb_window_t window = client_.makeWindow({10, 10, 100, 100}, 0xffffff);
    utsname names{};
    uname(&names);
    const std::string wmClass = program.identifier.value_or("xterm");
    client_.setNumber(window, "_NET_WM_PID", static_cast<std::uint32_t>(program.process));
    client_.setText(window, "WM_CLASS", wmClass + '\0' + "Window" + '\0');
    client_.setText(window, "WM_CLIENT_MACHINE", names.nodename);
    windows_.push_back(window);
    return window;
  }

  XServer server_;
  XClient client_{server_.display()};
  const std::unique_ptr<Platform> platform_ = makePlatform();
  std::unique_ptr<Workspace> workspace_;
  std::vector<xcb_window_t> windows_;
};

std::unique_ptr<ViewSubject> makeViewWithoutDisplay() {
  unsetenv("DISPLAY");
  return std::make_unique<SystemDrawing>();
}

class LinuxPanel final : public PanelSubject {
 public:
  NativeView& view() override { return *desk_.view; }
  Panel& panel() override { return *desk_.panel; }
  bool isShown() override {
    desk_.settle();
    return desk_.own() != XCB_WINDOW_NONE && desk_.client.isViewable(desk_.own());
  }
  Rect shownFrame() override {
    desk_.settle();
    const Rect frame = desk_.client.frame(desk_.own());
    return {frame.x, 800 - frame.maxY(), frame.width, frame.height};
  }

 private:
  PanelDesk desk_;
};

class LinuxDrawing final : public DrawingSubject {
 public:
  NativeView& view() override { return *desk_.view; }
  Panel& panel() override { return *desk_.panel; }
  CaptionPainter& painter() override { return painter_; }

 private:
  PanelDesk desk_;
  PangoPainter painter_;
};

class LinuxPictures final : public PictureSubject {
 public:
  LinuxPictures() { setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1); }
  CaptionPainter& painter() override { return painter_; }
  Picture picture(const CaptionImage& image) override {
    return pictureOf(static_cast<const CairoImage&>(image).pixels());
  }

 private:
  PangoPainter painter_;
};

VELLORA_INSTANTIATE(Linux, Workspace, LinuxWorkspace);
VELLORA_INSTANTIATE(Linux, ChangingWorkspace, LinuxWorkspace);
INSTANTIATE_TEST_SUITE_P(LinuxWithoutDisplay, ViewContract,
                         testing::Values(Backend<ViewSubject>{"Linux", &makeViewWithoutDisplay}));
VELLORA_INSTANTIATE(Linux, View, LinuxPanel);
VELLORA_INSTANTIATE(Linux, Panel, LinuxPanel);
VELLORA_INSTANTIATE(Linux, Drawing, LinuxDrawing);
VELLORA_INSTANTIATE(Linux, CaptionPainter, LinuxPictures);
VELLORA_INSTANTIATE(Linux, Picture, LinuxPictures);

}  // namespace
}  // namespace vellora
