#pragma once

#include <memory>

#include <gio/gio.h>

// Owners of GLib's resources. Main thread.
namespace vellora::demo {

struct GObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct NodeInfoUnref {
  void operator()(GDBusNodeInfo* info) const { g_dbus_node_info_unref(info); }
};
using NodeInfoPtr = std::unique_ptr<GDBusNodeInfo, NodeInfoUnref>;

struct VariantUnref {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantPtr = std::unique_ptr<GVariant, VariantUnref>;

struct MainLoopUnref {
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};
using MainLoopPtr = std::unique_ptr<GMainLoop, MainLoopUnref>;

// A source of the main loop that stays attached as long as its owner lives.
struct SourceRemove {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
using SourcePtr = std::unique_ptr<GSource, SourceRemove>;

// Calls `function` every `milliseconds` on the main loop, until the result is dropped.
inline SourcePtr everyMilliseconds(guint milliseconds, GSourceFunc function, gpointer data) {
  SourcePtr source(g_timeout_source_new(milliseconds));
  g_source_set_callback(source.get(), function, data, nullptr);
  g_source_attach(source.get(), nullptr);
  return source;
}

}  // namespace vellora::demo
