#include "witness/screen.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <cairo.h>
#include <xcb/composite.h>
#include <xcb/xcb.h>

namespace vellora::witness {

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

class XScreen final : public Screen {
 public:
  std::optional<Picture> whole() const override;
  std::optional<WindowPicture> windowAlone(const std::string& windowClass) const override;

  std::unique_ptr<xcb_connection_t, Disconnect> connection;
  xcb_screen_t* screen = nullptr;

  std::optional<Picture> grab(xcb_drawable_t drawable, int width, int height) const {
    xcb_connection_t* const c = connection.get();
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        c,
        xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, 0, 0,
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), ~0U),
        nullptr));
    if (!reply) return std::nullopt;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < count * 4) {
      return std::nullopt;
    }
    Picture picture{width, height, std::vector<std::uint32_t>(count)};
    std::memcpy(picture.pixels.data(), xcb_get_image_data(reply.get()), count * 4);
    for (std::uint32_t& pixel : picture.pixels) pixel &= 0xFFFFFFU;
    return picture;
  }

  bool hasClass(xcb_window_t window, std::string_view wanted) const {
    xcb_connection_t* const c = connection.get();
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256), nullptr));
    if (!reply) return false;
    const std::string_view value(
        static_cast<const char*>(xcb_get_property_value(reply.get())),
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    // Two texts, each with a zero byte at its end.
    const std::size_t end = value.find('\0');
    if (end == std::string_view::npos) return false;
    std::string_view second = value.substr(end + 1);
    second = second.substr(0, second.find('\0'));
    return value.substr(0, end) == wanted || second == wanted;
  }

  // The child of the root window in whose tree a viewable window of that class stands.
  xcb_window_t topLevelOf(std::string_view windowClass, xcb_window_t window, int depth) const {
    xcb_connection_t* const c = connection.get();
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree || depth > 4) return XCB_NONE;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i) {
      const Reply<xcb_get_window_attributes_reply_t> attributes(
          xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, children[i]), nullptr));
      const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
      if (viewable && (hasClass(children[i], windowClass) ||
                       topLevelOf(windowClass, children[i], depth + 1) != XCB_NONE)) {
        return children[i];
      }
    }
    return XCB_NONE;
  }
};

std::optional<Picture> XScreen::whole() const {
  return grab(screen->root, screen->width_in_pixels, screen->height_in_pixels);
}

std::optional<WindowPicture> XScreen::windowAlone(const std::string& windowClass) const {
  xcb_connection_t* const c = connection.get();
  const xcb_window_t window = topLevelOf(windowClass, screen->root, 0);
  if (window == XCB_NONE) return std::nullopt;
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
  if (!geometry) return std::nullopt;
  // The version has to be agreed on before anything else is asked of the extension.
  const Reply<xcb_composite_query_version_reply_t> version(
      xcb_composite_query_version_reply(c, xcb_composite_query_version(c, 0, 4), nullptr));
  const xcb_pixmap_t pixmap = xcb_generate_id(c);
  const Reply<xcb_generic_error_t> error(
      xcb_request_check(c, xcb_composite_name_window_pixmap_checked(c, window, pixmap)));
  if (error) return std::nullopt;
  const int border = 2 * geometry->border_width;
  const std::optional<Picture> own =
      grab(pixmap, geometry->width + border, geometry->height + border);
  xcb_free_pixmap(c, pixmap);
  if (!own) return std::nullopt;
  WindowPicture result{
      {screen->width_in_pixels, screen->height_in_pixels, {}},
      {double(geometry->x), double(geometry->y), double(own->width), double(own->height)}};
  result.pixels.resize(static_cast<std::size_t>(result.width) *
                       static_cast<std::size_t>(result.height));
  for (int y = 0; y < own->height; ++y) {
    for (int x = 0; x < own->width; ++x) {
      const int left = geometry->x + x;
      const int top = geometry->y + y;
      if (left < 0 || top < 0 || left >= result.width || top >= result.height) continue;
      result.pixels[static_cast<std::size_t>(top) * static_cast<std::size_t>(result.width) +
                    static_cast<std::size_t>(left)] = own->at(x, y);
    }
  }
  return result;
}

}  // namespace

std::unique_ptr<Screen> openXScreen() {
  auto opened = std::make_unique<XScreen>();
  int number = 0;
  opened->connection.reset(xcb_connect(nullptr, &number));
  if (xcb_connection_has_error(opened->connection.get()) != 0) return nullptr;
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(opened->connection.get()));
  for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
  opened->screen = screens.data;
  return opened;
}

bool Picture::writePng(const std::string& path) const {
  struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  const std::unique_ptr<cairo_surface_t, Destroy> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return false;
  unsigned char* const data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < height; ++y) {
    std::memcpy(data + static_cast<std::ptrdiff_t>(y) * stride,
                &pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)],
                static_cast<std::size_t>(width) * 4);
  }
  cairo_surface_mark_dirty(surface.get());
  return cairo_surface_write_to_png(surface.get(), path.c_str()) == CAIRO_STATUS_SUCCESS;
}

Difference difference(const Picture& a, const Picture& b, const Rect& area) {
  Difference result;
  const int left = std::max(0, static_cast<int>(std::ceil(area.minX())));
  const int top = std::max(0, static_cast<int>(std::ceil(area.minY())));
  const int right = std::min({a.width, b.width, static_cast<int>(std::floor(area.maxX()))});
  const int bottom = std::min({a.height, b.height, static_cast<int>(std::floor(area.maxY()))});
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      const std::uint32_t p = a.at(x, y);
      const std::uint32_t q = b.at(x, y);
      ++result.pixels;
      for (int shift = 0; shift <= 16; shift += 8) {
        const int d = static_cast<int>((p >> shift) & 0xFF) - static_cast<int>((q >> shift) & 0xFF);
        if (std::abs(d) > 6) {
          ++result.changed;
          break;
        }
      }
    }
  }
  return result;
}

}  // namespace vellora::witness
