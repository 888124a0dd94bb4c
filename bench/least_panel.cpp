#include "least_panel.h"

#include <X11/Xutil.h>

namespace {

// Where the stand-in player's window is, and one of its captions in it; pixels.
constexpr int left = 140;
constexpr int top = 50;
constexpr unsigned width = 1000;
constexpr unsigned height = 700;
constexpr int captionLeft = 240;
constexpr int belowRow = 40;
constexpr unsigned captionWidth = 600;
constexpr unsigned captionHeight = 36;

constexpr int depth = 32;
constexpr unsigned long halfWhite = 0x80808080;

}  // namespace

LeastPanel::LeastPanel() : display_(XOpenDisplay(nullptr)) {
  XVisualInfo visual{};
  if (display_ == nullptr ||
      XMatchVisualInfo(display_, DefaultScreen(display_), depth, TrueColor, &visual) == 0) {
    display_ = nullptr;
    return;
  }
  const Window root = DefaultRootWindow(display_);
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.colormap = XCreateColormap(display_, root, visual.visual, AllocNone);
  window_ =
      XCreateWindow(display_, root, left, top, width, height, 0, depth, InputOutput, visual.visual,
                    CWOverrideRedirect | CWColormap | CWBackPixel | CWBorderPixel, &attributes);
  picture_ = XCreatePixmap(display_, window_, captionWidth, captionHeight, depth);
  pen_ = XCreateGC(display_, window_, 0, nullptr);
  XSetForeground(display_, pen_, halfWhite);
  XFillRectangle(display_, picture_, pen_, 0, 0, captionWidth, captionHeight);
  XMapWindow(display_, window_);
  XFlush(display_);
}

void LeastPanel::show(const std::vector<std::int32_t>& tops) {
  if (tops == shown_) return;
  const auto isInside = [](std::int32_t row) {
    return row >= top && row < top + static_cast<std::int32_t>(height);
  };
  for (const std::int32_t row : shown_) {
    if (!isInside(row)) continue;
    XClearArea(display_, window_, captionLeft, row - top + belowRow, captionWidth, captionHeight,
               False);
  }
  for (const std::int32_t row : tops) {
    if (!isInside(row)) continue;
    XCopyArea(display_, picture_, window_, pen_, 0, 0, captionWidth, captionHeight, captionLeft,
              row - top + belowRow);
  }
  XFlush(display_);
  shown_ = tops;
}
