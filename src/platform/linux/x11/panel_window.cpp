#include "platform/linux/x11/panel_window.h"

#include <array>
#include <string_view>
#include <utility>

#include <unistd.h>
#include <xcb/shape.h>

#include "base/fatal.h"
#include "platform/linux/x11/x_property.h"

namespace vellora {
namespace {

constexpr std::uint32_t everyDesktop = 0xffffffff;
constexpr std::uint32_t neverBypassCompositor = 2;

std::vector<xcb_rectangle_t> xcbRectangles(const std::vector<PixelRect>& rects) {
  std::vector<xcb_rectangle_t> result;
  result.reserve(rects.size());
  for (const PixelRect& rect : rects) {
    result.push_back({rect.x, rect.y, rect.width, rect.height});
  }
  return result;
}

bool isGranted(xcb_connection_t* connection, xcb_void_cookie_t request) {
  const XcbReply<xcb_generic_error_t> refusal(xcb_request_check(connection, request));
  return !refusal;
}

}  // namespace

PanelWindow::PanelWindow(std::shared_ptr<XSession> session) : session_(std::move(session)) {
  chooseVisual();
  xcb_connection_t* const c = session_->connection();
  colormap_ = xcb_generate_id(c);
  xcb_create_colormap(c, XCB_COLORMAP_ALLOC_NONE, colormap_, session_->root(), visual_->visual_id);
  window_ = xcb_generate_id(c);
  // A border pixel must be given where the depth differs from the root's. What was drawn stays at
  // the top left when the size changes.
  const std::uint32_t mask = XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY |
                             XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
  const std::array<std::uint32_t, 6> values{
      0,
      0,
      XCB_GRAVITY_NORTH_WEST,
      1,
      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY,
      colormap_};
  made_ = isGranted(c, xcb_create_window_checked(c, depth_, window_, session_->root(), 0, 0, 1, 1,
                                                 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                                                 visual_->visual_id, mask, values.data()));
}

PanelWindow::~PanelWindow() {
  if (!session_->present()) return;
  if (window_ != XCB_WINDOW_NONE) xcb_destroy_window(session_->connection(), window_);
  xcb_free_colormap(session_->connection(), colormap_);
  xcb_flush(session_->connection());
}

// The last visual looked at that fits: any of depth 32, else the root's own.
void PanelWindow::chooseVisual() {
  const xcb_screen_t& screen = session_->screen();
  xcb_depth_iterator_t depths = xcb_screen_allowed_depths_iterator(&screen);
  for (; depths.rem > 0; xcb_depth_next(&depths)) {
    xcb_visualtype_iterator_t visuals = xcb_depth_visuals_iterator(depths.data);
    for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
      const bool root = visuals.data->visual_id == screen.root_visual;
      const bool alpha = depths.data->depth == 32 &&
                         visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR &&
                         visuals.data->red_mask == 0xff0000 && visuals.data->blue_mask == 0xff;
      if (!alpha && !(root && depth_ != 32)) continue;
      visual_ = visuals.data;
      depth_ = depths.data->depth;
    }
  }
  // The X protocol has the root's visual among those of the screen.
  if (visual_ == nullptr) fatalError("The X server does not list the visual of its root window");
}

void PanelWindow::applySettings() {
  xcb_connection_t* const c = session_->connection();
  const XAtoms& atoms = session_->atoms();
  if (session_->hasShape()) {
    xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         window_, 0, 0, 0, nullptr);
    // Without an alpha channel nothing may show before there is a caption.
    if (!hasAlpha()) clip({});
  }
  setNumbers(c, window_, atoms.comptonShadow, XCB_ATOM_CARDINAL, {0});
  setNumbers(c, window_, atoms.netWmWindowType, XCB_ATOM_ATOM, {atoms.netWmWindowTypeNotification});
  setNumbers(c, window_, atoms.netWmState, XCB_ATOM_ATOM,
             {atoms.netWmStateAbove, atoms.netWmStateSticky, atoms.netWmStateSkipTaskbar,
              atoms.netWmStateSkipPager});
  setNumbers(c, window_, atoms.netWmDesktop, XCB_ATOM_CARDINAL, {everyDesktop});
  setNumbers(c, window_, atoms.netWmBypassCompositor, XCB_ATOM_CARDINAL, {neverBypassCompositor});
  setNumbers(c, window_, atoms.netWmPid, XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
  // WM_HINTS (ICCCM 4.1.2.4): only the input field counts, and it says no.
  setNumbers(c, window_, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, {1, 0, 0, 0, 0, 0, 0, 0, 0});
  setBytes(c, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
           std::string_view("vellora\0Vellora\0", 16));
  setBytes(c, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "Vellora");
  setBytes(c, window_, atoms.netWmName, atoms.utf8String, "Vellora");
}

void PanelWindow::place(const PixelRect& frame) {
  const std::uint16_t mask = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT;
  const std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(frame.x),
                                            static_cast<std::uint32_t>(frame.y), frame.width,
                                            frame.height};
  xcb_configure_window(session_->connection(), window_, mask, values.data());
}

bool PanelWindow::map() {
  xcb_connection_t* const c = session_->connection();
  return isGranted(c, xcb_map_window_checked(c, window_));
}

void PanelWindow::unmap() { xcb_unmap_window(session_->connection(), window_); }

void PanelWindow::lower() {
  const std::uint32_t mode = XCB_STACK_MODE_BELOW;
  xcb_configure_window(session_->connection(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void PanelWindow::raiseAbove(xcb_window_t sibling) {
  const std::array<std::uint32_t, 2> values{sibling, XCB_STACK_MODE_ABOVE};
  xcb_configure_window(session_->connection(), window_,
                       XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
}

void PanelWindow::clip(const std::vector<PixelRect>& visible) {
  if (!session_->hasShape()) return;
  const auto rectangles = xcbRectangles(visible);
  xcb_shape_rectangles(session_->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void PanelWindow::unclip() {
  if (!session_->hasShape()) return;
  xcb_shape_mask(session_->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0,
                 XCB_PIXMAP_NONE);
}

bool PanelWindow::passesClicks() const {
  if (!session_->hasShape()) return false;
  xcb_connection_t* const c = session_->connection();
  const XcbReply<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
      c, xcb_shape_get_rectangles(c, window_, XCB_SHAPE_SK_INPUT), nullptr));
  return reply && reply->rectangles_len == 0;
}

bool PanelWindow::isOpaque() const {
  xcb_connection_t* const c = session_->connection();
  const auto geometryCookie = xcb_get_geometry(c, window_);
  const XcbReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(c, geometryCookie, nullptr));
  if (!geometry || geometry->depth == 32) return false;
  if (!session_->hasShape()) return true;
  const XcbReply<xcb_shape_query_extents_reply_t> extents(
      xcb_shape_query_extents_reply(c, xcb_shape_query_extents(c, window_), nullptr));
  return !extents || extents->bounding_shaped == 0;
}

}  // namespace vellora
