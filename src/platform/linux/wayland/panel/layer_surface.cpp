#include "platform/linux/wayland/panel/layer_surface.h"

#include <utility>

namespace vellora {
namespace {

// More rectangles than this are told as the one around them: a message for each is not worth it.
constexpr std::size_t mostRects = 32;

}  // namespace

const zwlr_layer_surface_v1_listener LayerSurface::roleListener{
    .configure =
        [](void* data, zwlr_layer_surface_v1* role, std::uint32_t serial, std::uint32_t,
           std::uint32_t) {
          auto& self = *static_cast<LayerSurface*>(data);
          zwlr_layer_surface_v1_ack_configure(role, serial);
          // Being acknowledged counts from a commit on. The first one comes with the first buffer.
          if (std::exchange(self.isConfigured_, true)) {
            wl_surface_commit(self.surface_.get());
          } else {
            self.listener_.surfaceReady();
          }
        },
    .closed =
        [](void* data, zwlr_layer_surface_v1*) {
          static_cast<LayerSurface*>(data)->listener_.surfaceClosed();
        },
};

const wp_fractional_scale_v1_listener LayerSurface::scaleListener{
    .preferred_scale = [](void* data, wp_fractional_scale_v1*, std::uint32_t scale) {
      constexpr double unit = 120;
      static_cast<LayerSurface*>(data)->listener_.surfaceScalePreferred(scale / unit);
    }};

const wl_callback_listener LayerSurface::frameListener{
    .done = [](void* data, wl_callback*, std::uint32_t) {
      auto& self = *static_cast<LayerSurface*>(data);
      self.frame_.reset();
      self.listener_.surfaceReady();
    }};

LayerSurface::LayerSurface(std::shared_ptr<WaylandSession> session, wl_output* output,
                           const Standing& standing, LayerSurfaceListener& listener)
    : session_(std::move(session)), listener_(listener), standing_(standing) {
  surface_.reset(wl_compositor_create_surface(session_->compositor()));
  role_.reset(zwlr_layer_shell_v1_get_layer_surface(session_->layerShell(), surface_.get(), output,
                                                    ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "vellora"));
  zwlr_layer_surface_v1_add_listener(role_.get(), &roleListener, this);
  viewport_.reset(wp_viewporter_get_viewport(session_->viewporter(), surface_.get()));
  if (session_->fractionalScales() != nullptr) {
    fractionalScale_.reset(wp_fractional_scale_manager_v1_get_fractional_scale(
        session_->fractionalScales(), surface_.get()));
    wp_fractional_scale_v1_add_listener(fractionalScale_.get(), &scaleListener, this);
  }
  zwlr_layer_surface_v1_set_anchor(
      role_.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  zwlr_layer_surface_v1_set_exclusive_zone(role_.get(), -1);
  zwlr_layer_surface_v1_set_keyboard_interactivity(
      role_.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
  const WlRegionPtr nothing(wl_compositor_create_region(session_->compositor()));
  wl_surface_set_input_region(surface_.get(), nothing.get());
  setSize(standing);
  setMargin(standing);
  wl_surface_commit(surface_.get());
  passesClicks_ = true;
}

LayerSurface::~LayerSurface() = default;

void LayerSurface::setSize(const Standing& standing) {
  zwlr_layer_surface_v1_set_size(role_.get(), static_cast<std::uint32_t>(standing.width),
                                 static_cast<std::uint32_t>(standing.height));
  wp_viewport_set_destination(viewport_.get(), standing.width, standing.height);
}

void LayerSurface::setMargin(const Standing& standing) {
  zwlr_layer_surface_v1_set_margin(role_.get(), standing.top, 0, 0, standing.left);
}

void LayerSurface::commit(const Standing& standing, wl_buffer* buffer,
                          const std::vector<PixelRect>& damage) {
  const Standing last = std::exchange(standing_, standing);
  if (standing.width != last.width || standing.height != last.height) setSize(standing);
  if (standing.left != last.left || standing.top != last.top) setMargin(standing);
  if (buffer != nullptr) {
    wl_surface_attach(surface_.get(), buffer, 0, 0);
    for (const PixelRect& rect :
         damage.size() > mostRects ? std::vector{boundsOf(damage)} : damage) {
      wl_surface_damage_buffer(surface_.get(), rect.x, rect.y, rect.width, rect.height);
    }
  }
  frame_.reset(wl_surface_frame(surface_.get()));
  wl_callback_add_listener(frame_.get(), &frameListener, this);
  wl_surface_commit(surface_.get());
}

}  // namespace vellora
