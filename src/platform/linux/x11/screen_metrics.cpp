#include "platform/linux/x11/screen_metrics.h"

#include <charconv>
#include <cstring>

#include <xcb/randr.h>

#include "platform/linux/x11/x_property.h"
#include "platform/linux/x11/xsettings.h"

namespace vellora {
namespace {

constexpr std::uint32_t settingsBytes = 65536;

}  // namespace

std::optional<int> windowScaleFromText(const char* text) {
  if (text == nullptr) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(text, text + std::strlen(text), value);
  if (error != std::errc() || value < 1) return std::nullopt;
  return value;
}

ScreenMetrics::ScreenMetrics(XSession& session, const char* gdkScale)
    : session_(session), environmentScale_(windowScaleFromText(gdkScale)) {
  session_.addListener(*this);
  if (!session_.present()) return;
  settingsOwner_.emplace(session_, session_.atoms().xsettingsOwner);
  if (session_.randrFirstEvent()) {
    xcb_randr_select_input(session_.connection(), session_.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
}

ScreenMetrics::~ScreenMetrics() { session_.removeListener(*this); }

std::optional<double> ScreenMetrics::scale() {
  if (!session_.present()) return std::nullopt;
  if (!scaleKnown_) readScale();
  return scale_;
}

std::optional<double> ScreenMetrics::primaryHeight() {
  const auto pixelsPerPoint = scale();
  if (!pixelsPerPoint) return std::nullopt;
  if (!heightKnown_) readPrimaryHeight();
  if (!primaryPixels_) return std::nullopt;
  return *primaryPixels_ / *pixelsPerPoint;
}

void ScreenMetrics::handleEvent(const xcb_generic_event_t& event) {
  const std::uint8_t type = eventType(event);
  if (settingsOwner_ && settingsOwner_->handleEvent(event)) scaleKnown_ = false;
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notice = eventAs<xcb_property_notify_event_t>(event);
    if (notice.atom == session_.atoms().xsettings) scaleKnown_ = false;
  }
  const auto randr = session_.randrFirstEvent();
  if (randr &&
      (type == *randr + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randr + XCB_RANDR_NOTIFY)) {
    heightKnown_ = false;
  }
}

void ScreenMetrics::sessionLost() {
  scaleKnown_ = false;
  heightKnown_ = false;
}

void ScreenMetrics::readScale() {
  scaleKnown_ = true;
  scale_ = environmentScale_.value_or(1);
  if (environmentScale_ || settingsOwner_->owner() == XCB_WINDOW_NONE) return;
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(session_.connection(), settingsOwner_->owner(), XCB_CW_EVENT_MASK,
                               &events);
  const auto settings = PropertyQuestion(session_.connection(), settingsOwner_->owner(),
                                         session_.atoms().xsettings, settingsBytes)
                            .takeBytes();
  const auto factor = integerSetting(settings.value_or(""), "Gdk/WindowScalingFactor");
  if (factor && *factor >= 1) scale_ = *factor;
}

void ScreenMetrics::readPrimaryHeight() {
  heightKnown_ = true;
  xcb_connection_t* const c = session_.connection();
  if (!session_.randrFirstEvent()) {
    primaryPixels_ = session_.screen().height_in_pixels;
    return;
  }
  primaryPixels_.reset();
  const XcbReply<xcb_randr_get_monitors_reply_t> reply(
      xcb_randr_get_monitors_reply(c, xcb_randr_get_monitors(c, session_.root(), 1), nullptr));
  if (!reply) return;
  xcb_randr_monitor_info_iterator_t each = xcb_randr_get_monitors_monitors_iterator(reply.get());
  for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
    if (!primaryPixels_ || each.data->primary != 0) primaryPixels_ = each.data->height;
    if (each.data->primary != 0) return;
  }
}

}  // namespace vellora
