#include "platform/linux/tray/status_icon.h"

#include <vector>

namespace vellora {

GVariantPtr statusIconPixmaps() {
  constexpr unsigned plate = 0x28;
  constexpr unsigned white = 0xff;
  GVariantBuilder pixmaps;
  g_variant_builder_init(&pixmaps, G_VARIANT_TYPE("a(iiay)"));
  for (const StatusIcon& icon : statusIcons()) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(icon.coverage.size() * 4);
    for (const unsigned covered : icon.coverage) {
      const auto level = static_cast<std::uint8_t>(plate + (white - plate) * covered / 255);
      pixels.insert(pixels.end(), {std::uint8_t{255}, level, level, level});
    }
    g_variant_builder_add(
        &pixmaps, "(ii@ay)", icon.side, icon.side,
        g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(), pixels.size(), 1));
  }
  return ownVariant(g_variant_builder_end(&pixmaps));
}

}  // namespace vellora
