#pragma once

#include <optional>

#include "platform/linux/x11/selection_watch.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// How many device pixels make a point, and how high the primary screen is. A point is the toolkit's
// logical pixel, in which accessibility gives extents: what GTK scales whole windows by, that is
// the environment's GDK_SCALE or else the desktop's XSETTINGS entry "Gdk/WindowScalingFactor", and
// 1 where neither is set. Xft.dpi changes the size of fonts only, no coordinate. Asked of the
// server once, and again when it says that something changed. Main thread.
class ScreenMetrics final : public XEventListener {
 public:
  // `gdkScale` is the environment's value, null when unset.
  ScreenMetrics(XSession& session, const char* gdkScale);
  ~ScreenMetrics() override;

  // Device pixels per point, a whole number of at least 1; nothing without a display.
  std::optional<double> scale();
  // Points; of the monitor marked as primary, else of the first; nothing when there is none.
  std::optional<double> primaryHeight();

  void handleEvent(const xcb_generic_event_t& event) override;
  void sessionLost() override;

 private:
  void readScale();
  void readPrimaryHeight();

  XSession& session_;
  std::optional<int> environmentScale_;
  std::optional<SelectionWatch> settingsOwner_;
  std::optional<int> scale_;
  std::optional<double> primaryPixels_;
  bool scaleKnown_ = false;
  bool heightKnown_ = false;
};

// What GTK reads in GDK_SCALE: the whole number that the text begins with; nothing unless positive.
std::optional<int> windowScaleFromText(const char* text);

}  // namespace vellora
