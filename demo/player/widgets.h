#pragma once

#include <string>

#include <gtk/gtk.h>

// Small helpers to build the window from. A new widget belongs to the container that it is put
// into.
namespace vellora::demo {

void addStyleClass(GtkWidget* widget, const char* name);
// Adds or removes the class.
void setStyleClass(GtkWidget* widget, const char* name, bool on);

// A left-aligned label of one line that ends in an ellipsis where it does not fit.
GtkWidget* newLabel(const std::string& text, const char* styleClass);
// The letter forms of `language` (BCP 47) where languages share characters.
void setLabelLanguage(GtkWidget* label, const std::string& language);

// The name and description that assistive programs read.
void setAccessibleName(GtkWidget* widget, const std::string& name);
void setAccessibleDescription(GtkWidget* widget, const std::string& description);
void setAccessibleId(GtkWidget* widget, const char* id);

enum class TransportIcon { previous, play, pause, next };
// A button with a drawn sign, so that no icon theme is needed.
GtkWidget* newTransportButton(TransportIcon icon, const char* name);
void setTransportIcon(GtkWidget* button, TransportIcon icon);

}  // namespace vellora::demo
