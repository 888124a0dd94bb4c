#pragma once

#include <memory>

#include <fractional-scale-v1-client-protocol.h>
#include <viewporter-client-protocol.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client-protocol.h>
#include <xdg-output-unstable-v1-client-protocol.h>

namespace vellora {

// What gives back an object of the compositor's.
struct WaylandDestroy {
  void operator()(wl_display* object) const { wl_display_disconnect(object); }
  void operator()(wl_registry* object) const { wl_registry_destroy(object); }
  void operator()(wl_callback* object) const { wl_callback_destroy(object); }
  void operator()(wl_compositor* object) const { wl_compositor_destroy(object); }
  void operator()(wl_shm* object) const { wl_shm_destroy(object); }
  void operator()(wl_shm_pool* object) const { wl_shm_pool_destroy(object); }
  void operator()(wl_buffer* object) const { wl_buffer_destroy(object); }
  void operator()(wl_surface* object) const { wl_surface_destroy(object); }
  void operator()(wl_region* object) const { wl_region_destroy(object); }
  void operator()(wp_viewporter* object) const { wp_viewporter_destroy(object); }
  void operator()(wp_viewport* object) const { wp_viewport_destroy(object); }
  void operator()(wp_fractional_scale_manager_v1* object) const {
    wp_fractional_scale_manager_v1_destroy(object);
  }
  void operator()(wp_fractional_scale_v1* object) const { wp_fractional_scale_v1_destroy(object); }
  void operator()(zxdg_output_manager_v1* object) const { zxdg_output_manager_v1_destroy(object); }
  void operator()(zxdg_output_v1* object) const { zxdg_output_v1_destroy(object); }
  void operator()(zwlr_layer_surface_v1* object) const { zwlr_layer_surface_v1_destroy(object); }

  // These two can be given back in newer versions only; before, they are forgotten on this side.
  void operator()(zwlr_layer_shell_v1* object) const {
    if (zwlr_layer_shell_v1_get_version(object) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION) {
      zwlr_layer_shell_v1_destroy(object);
    } else {
      wl_proxy_destroy(reinterpret_cast<wl_proxy*>(object));
    }
  }
  void operator()(wl_output* object) const {
    if (wl_output_get_version(object) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
      wl_output_release(object);
    } else {
      wl_output_destroy(object);
    }
  }
};

// Its owner; each has to go before the connection.
template <typename T>
using WaylandPtr = std::unique_ptr<T, WaylandDestroy>;

using WlDisplayPtr = WaylandPtr<wl_display>;
using WlRegistryPtr = WaylandPtr<wl_registry>;
using WlCallbackPtr = WaylandPtr<wl_callback>;
using WlCompositorPtr = WaylandPtr<wl_compositor>;
using WlShmPtr = WaylandPtr<wl_shm>;
using WlShmPoolPtr = WaylandPtr<wl_shm_pool>;
using WlBufferPtr = WaylandPtr<wl_buffer>;
using WlSurfacePtr = WaylandPtr<wl_surface>;
using WlRegionPtr = WaylandPtr<wl_region>;
using ViewporterPtr = WaylandPtr<wp_viewporter>;
using ViewportPtr = WaylandPtr<wp_viewport>;
using FractionalScalesPtr = WaylandPtr<wp_fractional_scale_manager_v1>;
using FractionalScalePtr = WaylandPtr<wp_fractional_scale_v1>;
using OutputManagerPtr = WaylandPtr<zxdg_output_manager_v1>;
using OutputPlacePtr = WaylandPtr<zxdg_output_v1>;
using LayerRolePtr = WaylandPtr<zwlr_layer_surface_v1>;
using LayerShellPtr = WaylandPtr<zwlr_layer_shell_v1>;
using WlOutputPtr = WaylandPtr<wl_output>;

}  // namespace vellora
