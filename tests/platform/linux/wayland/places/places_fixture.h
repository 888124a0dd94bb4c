#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

#include "base/rect.h"
#include "platform/accessibility.h"
#include "platform/linux/players/player_windows.h"
#include "platform/linux/wayland/workspace/wayland_workspace.h"
#include "support/temporary_folder.h"

namespace vellora {

// A picture of the screen, three bytes a pixel.
struct ScreenPicture {
  int width = 0;
  int height = 0;
  std::string pixels;
};

// The box of the pixels that are red; nothing where none is.
std::optional<Rect> redBox(const ScreenPicture& picture);

// A program in the session, which is ended and reaped with this object.
class SessionProgram {
 public:
  SessionProgram(std::vector<std::string> arguments,
                 std::vector<std::pair<std::string, std::string>> environment = {});
  ~SessionProgram();
  SessionProgram(const SessionProgram&) = delete;
  SessionProgram& operator=(const SessionProgram&) = delete;

  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = 0;
};

// A window with a red marker on the session's compositor, as the workspace and the accessibility
// room find it, and as it is seen.
class PlacesFixture : public testing::Test {
 protected:
  PlacesFixture();

  static std::vector<std::string> gtk3(bool hasHeader);
  static std::vector<std::string> gtk4(bool hasHeader);
  static std::vector<std::string> qt();
  // Each with a profile of its own, on the page with the marker.
  std::vector<std::string> firefox() const;
  std::vector<std::string> chromium() const;
  // The program's window is in front then.
  void start(const std::vector<std::string>& program, bool isX11 = false);
  std::int32_t front();

  // Where the marker is by what its program tells; nothing where that cannot be said.
  std::optional<Rect> told();
  virtual ScreenPicture picture() = 0;
  // Whether both come to be the same place, which `holds` as well, given in points.
  bool eventuallyRight(const std::function<bool(const Rect& marker)>& holds = nullptr);
  // Whether the condition comes true in good time, while the loop runs.
  static bool eventually(const std::function<bool()>& condition);

  double scale = 1;         // of the output
  bool isSmoothed = false;  // the compositor scales the window's picture, and so the marker's edges
  std::shared_ptr<PlayerWindows> windows = std::make_shared<PlayerWindows>();
  std::shared_ptr<Accessibility> accessibility;
  std::unique_ptr<WaylandWorkspace> workspace;

 private:
  TemporaryFolder browsers_;

 protected:
  std::unique_ptr<SessionProgram> program;  // ends before its folder goes
};

}  // namespace vellora
