#pragma once

#include <memory>

#include <cairo.h>
#include <pango/pango.h>

namespace vellora {

// Owners of Cairo's and Pango's objects, each of one reference.

struct CairoSurfaceDelete {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using CairoSurfacePtr = std::unique_ptr<cairo_surface_t, CairoSurfaceDelete>;

struct CairoContextDelete {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using CairoContextPtr = std::unique_ptr<cairo_t, CairoContextDelete>;

struct CairoPatternDelete {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using CairoPatternPtr = std::unique_ptr<cairo_pattern_t, CairoPatternDelete>;

struct CairoFontOptionsDelete {
  void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
using CairoFontOptionsPtr = std::unique_ptr<cairo_font_options_t, CairoFontOptionsDelete>;

struct PangoObjectDelete {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using PangoContextPtr = std::unique_ptr<PangoContext, PangoObjectDelete>;
using PangoLayoutPtr = std::unique_ptr<PangoLayout, PangoObjectDelete>;
using PangoFontMapPtr = std::unique_ptr<PangoFontMap, PangoObjectDelete>;

struct PangoFontDescriptionDelete {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
using PangoFontPtr = std::unique_ptr<PangoFontDescription, PangoFontDescriptionDelete>;

struct PangoMetricsDelete {
  void operator()(PangoFontMetrics* metrics) const { pango_font_metrics_unref(metrics); }
};
using PangoMetricsPtr = std::unique_ptr<PangoFontMetrics, PangoMetricsDelete>;

}  // namespace vellora
