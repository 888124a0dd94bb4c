#include "player/widgets.h"

#include <memory>

namespace vellora::demo {
namespace {

constexpr const char* iconKey = "vellora-transport-icon";

struct AttrListUnref {
  void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};

void triangle(cairo_t* cr, double fromX, double tipX, double y, double half) {
  cairo_move_to(cr, fromX, y - half);
  cairo_line_to(cr, tipX, y);
  cairo_line_to(cr, fromX, y + half);
  cairo_close_path(cr);
  cairo_fill(cr);
}

void bar(cairo_t* cr, double x, double y, double half) {
  cairo_rectangle(cr, x, y - half, 4, 2 * half);
  cairo_fill(cr);
}

gboolean drawIcon(GtkWidget* area, cairo_t* cr, gpointer) {
  GdkRGBA color;
  GtkStyleContext* context = gtk_widget_get_style_context(area);
  gtk_style_context_get_color(context, gtk_style_context_get_state(context), &color);
  gdk_cairo_set_source_rgba(cr, &color);
  const double x = gtk_widget_get_allocated_width(area) / 2.0;
  const double y = gtk_widget_get_allocated_height(area) / 2.0;
  switch (static_cast<TransportIcon>(GPOINTER_TO_INT(g_object_get_data(G_OBJECT(area), iconKey)))) {
    case TransportIcon::previous:
      bar(cr, x - 9, y, 7);
      triangle(cr, x + 8, x - 5, y, 7);
      break;
    case TransportIcon::play:
      triangle(cr, x - 6, x + 10, y, 9);
      break;
    case TransportIcon::pause:
      bar(cr, x - 7, y, 9);
      bar(cr, x + 3, y, 9);
      break;
    case TransportIcon::next:
      triangle(cr, x - 8, x + 5, y, 7);
      bar(cr, x + 5, y, 7);
      break;
  }
  return TRUE;
}

}  // namespace

void addStyleClass(GtkWidget* widget, const char* name) { setStyleClass(widget, name, true); }

void setStyleClass(GtkWidget* widget, const char* name, bool on) {
  GtkStyleContext* context = gtk_widget_get_style_context(widget);
  on ? gtk_style_context_add_class(context, name) : gtk_style_context_remove_class(context, name);
}

GtkWidget* newLabel(const std::string& text, const char* styleClass) {
  GtkWidget* label = gtk_label_new(text.c_str());
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  addStyleClass(label, styleClass);
  return label;
}

void setLabelLanguage(GtkWidget* label, const std::string& language) {
  const std::unique_ptr<PangoAttrList, AttrListUnref> attributes(pango_attr_list_new());
  pango_attr_list_insert(attributes.get(),
                         pango_attr_language_new(pango_language_from_string(language.c_str())));
  gtk_label_set_attributes(GTK_LABEL(label), attributes.get());
}

void setAccessibleName(GtkWidget* widget, const std::string& name) {
  atk_object_set_name(gtk_widget_get_accessible(widget), name.c_str());
}

void setAccessibleDescription(GtkWidget* widget, const std::string& description) {
  atk_object_set_description(gtk_widget_get_accessible(widget), description.c_str());
}

void setAccessibleId(GtkWidget* widget, const char* id) {
  atk_object_set_accessible_id(gtk_widget_get_accessible(widget), id);
}

GtkWidget* newTransportButton(TransportIcon icon, const char* name) {
  GtkWidget* button = gtk_button_new();
  GtkWidget* area = gtk_drawing_area_new();
  gtk_widget_set_size_request(area, 26, 26);
  g_signal_connect(area, "draw", G_CALLBACK(drawIcon), nullptr);
  gtk_container_add(GTK_CONTAINER(button), area);
  gtk_widget_set_focus_on_click(button, FALSE);
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
  addStyleClass(button, "transport");
  setAccessibleName(button, name);
  setTransportIcon(button, icon);
  return button;
}

void setTransportIcon(GtkWidget* button, TransportIcon icon) {
  GtkWidget* area = gtk_bin_get_child(GTK_BIN(button));
  g_object_set_data(G_OBJECT(area), iconKey, GINT_TO_POINTER(static_cast<int>(icon)));
  gtk_widget_queue_draw(area);
}

}  // namespace vellora::demo
