#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "base/rect.h"
#include "platform/linux/players/player_description.h"

namespace vellora {

// Where a window is that its program cannot tell the place of, as on Wayland. In points from the
// top left of the screens.
struct SurfacePlace {
  Rect content;                 // without decorations and shadows
  std::optional<Rect> surface;  // with the shadow that the program draws; nothing: it is not known
  // Of an X11 window, whose program tells positions on the screen: how many of the X server's
  // pixels a point has where programs scale themselves. Nothing: positions count from the surface.
  std::optional<double> serversPixels{};
  bool operator==(const SurfacePlace&) const = default;
};

// A window that fits descriptions, as the window system knows it.
struct PlayerWindow {
  std::int32_t process = 0;
  std::vector<PlayerDescriptionPtr> descriptions;  // in the order in which they are to be tried
  // Of the client area, without what a window manager puts around it and without the shadow that
  // the program does, in device pixels from the top left of the screen; nothing where the window
  // system does not tell.
  std::optional<Rect> clientArea;
  double scale = 1;  // device pixels a point
  // Of all windows of the process that can be seen, that in front first, where programs tell the
  // positions of their elements without knowing where their windows are. Nothing: they know it.
  std::optional<std::vector<SurfacePlace>> surfaces{};
};

// The players' windows that the window system has found: written on the main thread, read by
// whatever needs them. Any thread.
class PlayerWindows {
 public:
  // The window that is in front now; the others stay as they were, behind it. Of each process the
  // latest window is kept.
  void bringToFront(PlayerWindow window);
  // A window that need not be in front; behind those that are known.
  void note(PlayerWindow window);
  // Keeps the windows of these processes only.
  void keepOnly(const std::vector<std::int32_t>& processes);

  std::optional<PlayerWindow> find(std::int32_t process) const;
  // Last in front first.
  std::vector<PlayerWindow> all() const;

 private:
  mutable std::mutex mutex_;
  std::vector<PlayerWindow> windows_;
};

}  // namespace vellora
