#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/panel/layer_surface.h"
#include "platform/linux/wayland/panel/panel_canvas.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/window_system/hosted_view.h"
#include "platform/panel.h"

namespace vellora {

// The overlay panel, on the output that most of its frame lies on, and cut at that output's edges.
// Hidden, it has no surface and no memory for pixels. Nothing is sent for a drawing that comes to
// what is shown already; what changes while the compositor is still busy with the last change is
// drawn when that is done, as it is then. Without a compositor it only remembers its settings. Main
// thread.
class WaylandPanel final : public Panel,
                           private WaylandListener,
                           private ViewHost,
                           private LayerSurfaceListener {
 public:
  explicit WaylandPanel(std::shared_ptr<WaylandSession> session);
  ~WaylandPanel() override;

  void configure(NativeView& content) override;
  void setFrame(const Rect& frame) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  // A compositor cannot be asked what a surface is like. This is what it was told of the surface,
  // or would be told with the first word of it: a hidden panel has none, and nobody can click it.
  bool ignoresMouseEvents() const override;
  bool isOpaque() const override;

 private:
  void outputsChanged() override;
  void sessionLost() override;
  void displaySoon() override;
  std::optional<double> hostScale() override;
  void surfaceReady() override;
  void surfaceClosed() override;
  void surfaceScalePreferred(double scale) override;

  std::optional<Standing> wantedStanding() const;
  void displayNow();
  void show(const Standing& standing);
  void dropSurface();

  std::shared_ptr<WaylandSession> session_;
  HostedView* view_ = nullptr;
  bool shown_ = false;
  Rect frame_;
  bool isDue_ = false;  // what is shown may not be what is wanted
  GSourcePtr drawing_;
  std::unique_ptr<LayerSurface> surface_;
  std::optional<double> preferredScale_;  // of that surface
  std::optional<PanelContent> content_;   // of its buffer
  PanelCanvas canvas_;
  // Answered once the compositor has taken the last surface away. No other is made before.
  WlCallbackPtr farewell_;
  // The output from which the compositor took the surface, until something is different there.
  std::optional<std::uint32_t> closedOn_;
};

}  // namespace vellora
