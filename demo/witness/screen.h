#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace vellora::witness {

// Pixels as 0x00RRGGBB, row by row from the top.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  std::uint32_t at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
  bool writePng(const std::string& path) const;
};

// The screen with nothing but one window on it.
struct WindowPicture : Picture {
  Rect frame;  // of the window with what the window manager put around it, in pixels of the screen
};

// The screen as somebody with eyes open sees it. One thread.
class Screen {
 public:
  virtual ~Screen() = default;

  // What a person sees: everything that the compositor put on the screen.
  virtual std::optional<Picture> whole() const = 0;

  // The screen as it would be without the windows above the program's. Nothing without a window of
  // that class (X11) or application identifier (Wayland), or where there is no such picture.
  virtual std::optional<WindowPicture> windowAlone(const std::string& windowClass) const = 0;
};

// The X screen. A window's own picture is the one that the compositor is handed (X Composite), put
// where the window stands, on black; without a compositor there is none. Null without a display.
std::unique_ptr<Screen> openXScreen();

// How many pixels of `area` (pixels of the screen) differ by more than 6 of 255 in some channel,
// and how many pixels that part of the pictures has.
struct Difference {
  std::size_t changed = 0;
  std::size_t pixels = 0;
};
Difference difference(const Picture& a, const Picture& b, const Rect& area);

}  // namespace vellora::witness
