#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/wayland/panel/panel_content.h"
#include "platform/linux/wayland/panel/shm_buffer.h"

namespace vellora {

// The buffers that a panel's surface shows, of which the compositor may read one while the next is
// drawn: two at most. One that it has read takes no memory until it is drawn on again. Main thread.
class PanelCanvas {
 public:
  // `freed` is called when a buffer can be drawn on again.
  explicit PanelCanvas(std::function<void()> freed);

  // A buffer with that content, of the size that the standing says, for the compositor to be given;
  // null when there is none to be had now.
  ShmBuffer* draw(wl_shm* shm, const PanelContent& content, const Standing& standing);

  // Once the compositor has been given it: buffers of another size are needed no more.
  void dropOld();
  void clear();

 private:
  struct Page {
    std::unique_ptr<ShmBuffer> buffer;
    PanelContent content;
  };

  void noteReleased();
  Page* freePage(wl_shm* shm, const Standing& standing);

  std::function<void()> freed_;
  std::array<Page, 2> pages_;
  std::array<Page, 2> old_;  // what is shown until a buffer of the new size is
  int pixelWidth_ = 0;
  int pixelHeight_ = 0;
};

}  // namespace vellora
