// What it takes at the very least to show text in a window through Pango: the fonts are read, while
// the display is connected to; three lines are laid out, a window as large as they are is mapped,
// and they are drawn in it. No player, no bus, no file. Until it is ended.
//
//   least_start
#include <cstdio>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cairo-xlib.h>
#include <pango/pangocairo.h>
#include <unistd.h>

namespace {

constexpr const char* text =
    "Line 1 of a song that is sung in one language\nThe current translation stays clear\nThe end";

// Lives as long as the program.
PangoLayout* layOut() {
  PangoContext* context = pango_font_map_create_context(pango_cairo_font_map_get_default());
  PangoLayout* layout = pango_layout_new(context);
  PangoFontDescription* font = pango_font_description_from_string("Inter Medium 18px");
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout, text, -1);
  return layout;
}

Window makeWindow(Display* display, unsigned width, unsigned height) {
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  const Window window =
      XCreateWindow(display, DefaultRootWindow(display), 0, 0, width, height, 0, CopyFromParent,
                    InputOutput, nullptr, CWOverrideRedirect, &attributes);
  char name[] = "Least";
  XClassHint hint{name, name};
  XSetClassHint(display, window, &hint);
  return window;
}

}  // namespace

int main() {
  PangoLayout* layout = layOut();
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    std::fputs("least_start: no display\n", stderr);
    return 1;
  }
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(layout, &width, &height);
  const Window window =
      makeWindow(display, static_cast<unsigned>(width), static_cast<unsigned>(height));
  XMapWindow(display, window);
  XFlush(display);
  cairo_surface_t* surface = cairo_xlib_surface_create(
      display, window, DefaultVisual(display, DefaultScreen(display)), width, height);
  cairo_t* pen = cairo_create(surface);
  cairo_set_source_rgb(pen, 1, 1, 1);
  pango_cairo_show_layout(pen, layout);
  cairo_destroy(pen);
  cairo_surface_flush(surface);
  XFlush(display);
  pause();
}
