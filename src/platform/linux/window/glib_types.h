#pragma once

#include <memory>

#include <glib.h>

namespace vellora {

// Removes the source from its main context and lets it go.
struct GSourceRemove {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};

using GSourcePtr = std::unique_ptr<GSource, GSourceRemove>;

}  // namespace vellora
