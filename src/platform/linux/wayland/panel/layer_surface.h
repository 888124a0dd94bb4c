#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/wayland/panel/standing.h"
#include "platform/linux/wayland/session/wayland_session.h"

namespace vellora {

// Hears what the compositor says of a surface. May destroy the surface in each of these. Main
// thread.
class LayerSurfaceListener {
 public:
  virtual ~LayerSurfaceListener() = default;

  // The surface may be given a new state (see mayCommit).
  virtual void surfaceReady() = 0;
  // It is shown no more and never will be again.
  virtual void surfaceClosed() = 0;
  // Pixels per point that the compositor would like it to have.
  virtual void surfaceScalePreferred(double scale) = 0;
};

// A surface on an output's overlay layer, above all windows, that takes neither clicks nor the
// keyboard nor space from windows. Not to be seen before it has been given a buffer. It is given
// one state at a time: the next one waits until the compositor has used the last (its frame
// callback), so that one that hangs is never sent more than it takes. Main thread; the session must
// be present when it is made.
class LayerSurface {
 public:
  // The listener must outlive it; `output` is the compositor's of `standing`.
  LayerSurface(std::shared_ptr<WaylandSession> session, wl_output* output, const Standing& standing,
               LayerSurfaceListener& listener);
  ~LayerSurface();
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;

  std::uint32_t output() const { return standing_.output; }
  bool mayCommit() const { return isConfigured_ && !frame_; }
  // As it was last told the compositor.
  const Standing& standing() const { return standing_; }
  // Whether the compositor has been told that no click is for it. There is no asking it.
  bool passesClicks() const { return passesClicks_; }

  // Stands so from now on and, unless it is null, shows that buffer, which looks other than the
  // last one in the given pixels at most. Only when it may be done.
  void commit(const Standing& standing, wl_buffer* buffer, const std::vector<PixelRect>& damage);

 private:
  void setSize(const Standing& standing);
  void setMargin(const Standing& standing);
  static const zwlr_layer_surface_v1_listener roleListener;
  static const wp_fractional_scale_v1_listener scaleListener;
  static const wl_callback_listener frameListener;

  std::shared_ptr<WaylandSession> session_;
  LayerSurfaceListener& listener_;
  WlSurfacePtr surface_;
  LayerRolePtr role_;
  ViewportPtr viewport_;
  FractionalScalePtr fractionalScale_;
  WlCallbackPtr frame_;
  Standing standing_;
  bool isConfigured_ = false;
  bool passesClicks_ = false;
};

}  // namespace vellora
