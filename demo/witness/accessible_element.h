#pragma once

#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "base/rect.h"
#include "platform/linux/glib/glib_ptr.h"

namespace vellora::witness {

using Connection = GObjectPtr<GDBusConnection>;

// A connection of its own to the session's accessibility bus; null when there is none.
Connection accessibilityBus();

// One element, asked one plain synchronous question at a time. What is not answered within a second
// is empty.
struct Element {
  GDBusConnection* bus;
  std::string name;
  std::string path;

  std::string text(const char* property) const;  // of org.a11y.atspi.Accessible
  std::string role() const;
  // In screen coordinates, in whatever unit the program has; empty for an element that has gone.
  Rect extents() const;
  std::vector<Element> children() const;
  std::map<std::string, std::string> attributes() const;
  std::string content() const;  // all of its text (org.a11y.atspi.Text)
  // The process that it lives in; 0 when the bus does not tell.
  unsigned process() const;
};

// The element whose children are the programs on the bus.
Element desktopOf(GDBusConnection* bus);

}  // namespace vellora::witness
