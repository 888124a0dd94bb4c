#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/window_system/hosted_view.h"
#include "platform/linux/x11/panel_presenter.h"
#include "platform/linux/x11/panel_window.h"
#include "platform/linux/x11/selection_watch.h"
#include "platform/linux/x11/stacking_guard.h"
#include "platform/linux/x11/top_levels.h"
#include "platform/panel.h"

namespace vellora {

// The overlay panel. Without a display it only remembers its settings. While it is shown it stays
// above the managed windows and below all others (see restackingOf, and StackingGuard for the limit
// of that), and it follows the compositor's coming and going: without one it is clipped to the
// captions' plates. Main thread.
class XPanel final : public Panel, private XEventListener, private ViewHost {
 public:
  // `clock` tells the seconds since some moment and never goes back; null: the system's own.
  explicit XPanel(std::shared_ptr<XSession> session, std::function<double()> clock = nullptr);
  ~XPanel() override;

  void configure(NativeView& content) override;
  void setFrame(const Rect& frame) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  bool ignoresMouseEvents() const override;
  bool isOpaque() const override;

 private:
  void handleEvent(const xcb_generic_event_t& event) override;
  void endTurn() override;
  void sessionLost() override;
  void displaySoon() override;
  std::optional<double> hostScale() override;

  bool onScreen() const { return shown_ && window_ != nullptr; }
  void makeWindow();
  void dropWindow();
  void show();
  void place();
  void displayNow();
  void takePlace();

  std::shared_ptr<XSession> session_;
  std::function<double()> clock_;
  HostedView* view_ = nullptr;
  bool shown_ = false;
  Rect frame_;
  std::unique_ptr<PanelWindow> window_;
  PixelRect wanted_;  // the frame, in pixels
  PixelRect placed_;  // of it, where the window is
  std::optional<double> placedScale_;
  TopLevels topLevels_;
  PanelPresenter presenter_;
  std::optional<SelectionWatch> compositor_;
  StackingGuard guard_;
  GSourcePtr drawing_;
};

}  // namespace vellora
