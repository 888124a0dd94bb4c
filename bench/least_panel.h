#pragma once

#include <cstdint>
#include <vector>

#include <X11/Xlib.h>

// A transparent window with ready-made pictures, one below each row, that are copied anew when the
// rows have moved: the least that captions take which follow them.
class LeastPanel {
 public:
  LeastPanel();
  LeastPanel(const LeastPanel&) = delete;
  LeastPanel& operator=(const LeastPanel&) = delete;

  bool isOpen() const { return display_ != nullptr; }
  // The rows' upper edges on the screen, in pixels.
  void show(const std::vector<std::int32_t>& tops);

 private:
  Display* display_;  // as long as the program
  Window window_ = 0;
  Pixmap picture_ = 0;
  GC pen_ = nullptr;
  std::vector<std::int32_t> shown_;
};
