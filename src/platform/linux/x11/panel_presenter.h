#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/window_system/hosted_view.h"
#include "platform/linux/window_system/placement.h"
#include "platform/linux/x11/panel_window.h"

namespace vellora {

// Brings a view's drawing onto the panel's window. What is shown is remembered as a list of
// pictures and places: a drawing that comes to the same list sends nothing, and any other redraws
// only where the two lists differ. It is put together beside the window, on the server, and appears
// there at once. A picture is sent to the server once for as long as it is shown; moving it sends
// only where to. Main thread; the session must be present at each call of `present`.
class PanelPresenter {
 public:
  explicit PanelPresenter(std::shared_ptr<XSession> session);

  // Shows the view in `window`, which is `frame` large and mapped, at `scale` pixels to a point.
  // The panel's top left is at `origin`, in points of the window. `clipToPlates`: only the plates
  // remain part of the window, as there is no transparency.
  void present(HostedView& view, Point origin, PanelWindow& window, const PixelRect& frame,
               double scale, bool clipToPlates);

  // What the window shows is not known any more.
  void invalidate() { shownIsKnown_ = false; }
  // The window is gone.
  void forgetWindow();

 private:
  // What a list was shown with, besides the list.
  struct Setting {
    PixelRect frame;
    double scale = 1;
    bool clipToPlates = false;
  };

  std::vector<PixelRect> damage(const std::vector<Placement>& next, const Setting& setting) const;
  void applyClip(PanelWindow& window, const std::vector<Placement>& next, const Setting& setting);
  void paint(const std::vector<Placement>& next, const std::vector<PixelRect>& damaged,
             double scale);
  void drawCopy(cairo_t* context, const Placement& placement, double scale);
  bool prepareTarget(PanelWindow& window, const PixelRect& frame);

  std::shared_ptr<XSession> session_;
  CairoSurfacePtr target_;
  xcb_window_t targetWindow_ = XCB_WINDOW_NONE;
  std::vector<Placement> shown_;
  Setting shownSetting_;
  bool shownIsKnown_ = false;
  bool clipIsKnown_ = false;
};

}  // namespace vellora
