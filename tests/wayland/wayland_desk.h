#pragma once

#include <memory>
#include <string>
#include <vector>

#include "e2e/desk.h"
#include "wayland/compositor.h"

namespace vellora::e2e {

// A desk on a Wayland compositor. The player is a program of Wayland's, which does not know where
// its window is, or one of X11 under Xwayland.
class WaylandDesk : public Desk {
 protected:
  enum class PlayersWindow { native, underXwayland };

  std::unique_ptr<witness::Screen> openScreen() override;
  // With frames in the layout's points.
  std::optional<witness::SeenPlayer> seenPlayer() const override;

  // Starts the player, paused, with its window there, and keeps a picture of it without captions.
  void startPlayerAt(const Rect& frame, PlayersWindow window = PlayersWindow::native);
  // The same with captions over it.
  void follow(const Rect& frame, PlayersWindow window = PlayersWindow::native);
  // Waits until the player's picture has come to rest, and keeps it.
  void rememberPlayerAlone();
  // Hides the captions, keeps the player's picture as it is then, and shows them again.
  void rememberPlayerAnew();

  static constexpr Rect usualFrame{140, 50, 1000, 700};

  Compositor* compositor = nullptr;  // `screen`, once that is open

 private:
  bool isPlacedByScreen_ = false;  // the player's accessible positions are the screen's
};

}  // namespace vellora::e2e
