#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/native_view.h"

namespace vellora {

// What a view asks of the window that it is in. Main thread.
class ViewHost {
 public:
  virtual ~ViewHost() = default;

  virtual void displaySoon() = 0;
  // Pixels per point; nothing when the window is not on any display.
  virtual std::optional<double> hostScale() = 0;
};

// The captions' view, drawn by its host. Without one it still draws into bitmaps. Main thread.
class HostedView final : public NativeView {
 public:
  // `screenScale` tells the pixels per point of the screen where a window would be; nothing when
  // there is none.
  explicit HostedView(std::function<std::optional<double>()> screenScale);

  void setDrawFunction(std::function<void(Surface&)> draw) override;
  void setFrame(const Rect& frame) override;
  Rect bounds() const override;
  void setNeedsDisplay() override;
  std::optional<double> windowScale() const override;
  std::unique_ptr<Bitmap> bitmapForCachingDisplay() override;
  void cacheDisplay(Bitmap& bitmap) override;

  // Null takes the view out of its window. The host tells before it goes.
  void setHost(ViewHost* host) { host_ = host; }
  Rect frame() const { return frame_; }
  // In the view's own coordinates.
  void draw(Surface& surface);

 private:
  // The scale of a view that is in no window and on no screen.
  static constexpr double fallbackScale = 2;

  std::function<std::optional<double>()> screenScale_;
  ViewHost* host_ = nullptr;
  std::function<void(Surface&)> draw_;
  Rect frame_;
};

}  // namespace vellora
