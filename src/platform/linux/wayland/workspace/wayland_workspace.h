#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/rect.h"
#include "platform/linux/players/player_windows.h"
#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/workspace.h"

namespace vellora {

// What a workspace asks of the compositor's outputs. Called on the main thread.
struct WaylandScreens {
  std::function<std::optional<double>()> primaryHeight;  // points
  std::function<std::optional<double>()> primaryScale;   // pixels per point
  std::function<double()> largestScale;                  // of all outputs; 1 without any
  // Of the output on which most of a rectangle of the layout lies.
  std::function<double(const Rect& place)> scaleUnder;
};

// The desktop by what a Wayland compositor's locator tells. A window that is minimised, or on a
// workspace that is not shown, is not in front. The players' windows are kept in a directory for
// others, also while nobody asks for anything. Main thread.
class WaylandWorkspace final : public Workspace {
 public:
  // `windows` is the directory, which nobody else writes; null: nobody reads it.
  WaylandWorkspace(std::unique_ptr<WindowLocator> locator, WaylandScreens screens,
                   std::vector<PlayerDescriptionPtr> descriptions,
                   std::shared_ptr<PlayerWindows> windows);
  ~WaylandWorkspace() override;
  WaylandWorkspace(const WaylandWorkspace&) = delete;
  WaylandWorkspace& operator=(const WaylandWorkspace&) = delete;

  std::shared_ptr<const RunningApplication> frontmostApplication() override;
  // In the locator's order. The first call waits for the locator's first answer, two seconds at
  // most and with GLib's main context: the diagnosis asks before any loop runs.
  std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) override;
  std::optional<double> primaryScreenHeight() override;
  std::optional<double> mainScreenScale() override;

 private:
  void update();
  void awaitFirstAnswer();

  const std::unique_ptr<WindowLocator> locator_;
  const WaylandScreens screens_;
  const std::vector<PlayerDescriptionPtr> descriptions_;
  const std::shared_ptr<PlayerWindows> windows_;
  std::shared_ptr<const RunningApplication> frontmost_;
  std::optional<Rect> frontPlace_;               // of a player in front
  std::pair<double, double> frontScales_{1, 1};  // of its output, and the largest
  bool isAwaited_ = false;                       // the first answer, once
};

}  // namespace vellora
