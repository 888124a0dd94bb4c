#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "platform/linux/drawing/handles.h"
#include "platform/linux/wayland/session/wayland_ptr.h"

namespace vellora {

// Pixels that the compositor reads from memory that both sides have: premultiplied ARGB32 in native
// byte order, as Cairo has them. Clear at first; only pages that were drawn on take memory. Main
// thread.
class ShmBuffer {
 public:
  // Null when there is no memory of that size to be had. `released` is called whenever the
  // compositor no longer reads what it was given.
  static std::unique_ptr<ShmBuffer> make(wl_shm* shm, int width, int height,
                                         std::function<void()> released);
  ~ShmBuffer();
  ShmBuffer(const ShmBuffer&) = delete;
  ShmBuffer& operator=(const ShmBuffer&) = delete;

  wl_buffer* handle() const { return buffer_.get(); }
  // An image surface, to be drawn on only while the compositor does not read.
  cairo_surface_t* pixels() const { return pixels_.get(); }
  // From being given to the compositor until it has given it back.
  bool isInUse() const { return isInUse_; }
  void noteGiven() { isInUse_ = true; }
  // Makes it clear again, and gives its memory back to the system; false where that cannot be done
  // and nothing has changed. Not while the compositor reads.
  bool discard();

 private:
  ShmBuffer() = default;

  static const wl_buffer_listener listener;

  void* memory_ = nullptr;
  std::size_t size_ = 0;
  WlBufferPtr buffer_;
  CairoSurfacePtr pixels_;
  std::function<void()> released_;
  bool isInUse_ = false;
};

}  // namespace vellora
