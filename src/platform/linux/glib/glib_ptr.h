#pragma once

#include <memory>

#include <gio/gio.h>

namespace vellora {

// Owners of GLib's objects, one reference each. The deleters carry no state, so an owner is as
// large as a pointer.
struct GObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

template <auto release>
struct GRelease {
  template <typename T>
  void operator()(T* resource) const {
    release(resource);
  }
};
using GVariantPtr = std::unique_ptr<GVariant, GRelease<g_variant_unref>>;
using GErrorPtr = std::unique_ptr<GError, GRelease<g_error_free>>;
using GCharPtr = std::unique_ptr<char, GRelease<g_free>>;
using GMainLoopPtr = std::unique_ptr<GMainLoop, GRelease<g_main_loop_unref>>;
using GMainContextPtr = std::unique_ptr<GMainContext, GRelease<g_main_context_unref>>;
using GNodeInfoPtr = std::unique_ptr<GDBusNodeInfo, GRelease<g_dbus_node_info_unref>>;

// A source of a main context; destroying the owner takes the source out of its context.
struct GSourceRemove {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
using GSourcePtr = std::unique_ptr<GSource, GSourceRemove>;

// Takes over a floating reference.
inline GVariantPtr ownVariant(GVariant* floating) {
  return GVariantPtr(g_variant_ref_sink(floating));
}

template <typename T>
GObjectPtr<T> shareObject(T* object) {
  return GObjectPtr<T>(static_cast<T*>(g_object_ref(object)));
}

// Where a GError is to be put: `GErrorSlot error; f(..., error.out()); if (error.get()) …`.
class GErrorSlot {
 public:
  ~GErrorSlot() { g_clear_error(&error_); }
  GErrorSlot() = default;
  GErrorSlot(const GErrorSlot&) = delete;
  GErrorSlot& operator=(const GErrorSlot&) = delete;

  GError** out() {
    g_clear_error(&error_);
    return &error_;
  }
  const GError* get() const { return error_; }

 private:
  GError* error_ = nullptr;
};

}  // namespace vellora
