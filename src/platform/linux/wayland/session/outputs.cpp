#include "platform/linux/wayland/session/outputs.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace vellora {

// What an output has told of itself, in the compositor's own terms.
struct Outputs::Each {
  Outputs* owner = nullptr;
  std::uint32_t id = 0;
  WlOutputPtr output;
  OutputPlacePtr place;
  std::string name;
  Point corner;
  Size mode;
  int wholeScale = 1;
  bool isTurned = false;  // by a quarter or three
  std::optional<Point> placeCorner;
  std::optional<Size> placeSize;
  bool told = false;

  bool isComplete() const {
    return told && mode.width > 0 && mode.height > 0 && (!place || (placeCorner && placeSize));
  }
  Output asOutput() const {
    const Size pixels = isTurned ? Size{mode.height, mode.width} : mode;
    const Point at = placeCorner.value_or(corner);
    const Size points =
        placeSize.value_or(Size{pixels.width / wholeScale, pixels.height / wholeScale});
    return {
        id, name, {at.x, at.y, points.width, points.height}, pixels, outputScale(pixels, points)};
  }
};

namespace {

bool isQuarterTurn(std::int32_t transform) {
  return transform == WL_OUTPUT_TRANSFORM_90 || transform == WL_OUTPUT_TRANSFORM_270 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_90 ||
         transform == WL_OUTPUT_TRANSFORM_FLIPPED_270;
}

}  // namespace

const wl_output_listener Outputs::outputListener{
    .geometry =
        [](void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t,
           std::int32_t, const char*, const char*, std::int32_t transform) {
          auto& each = *static_cast<Each*>(data);
          each.corner = {static_cast<double>(x), static_cast<double>(y)};
          each.isTurned = isQuarterTurn(transform);
        },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t) {
          if ((flags & WL_OUTPUT_MODE_CURRENT) == 0) return;
          static_cast<Each*>(data)->mode = {static_cast<double>(width),
                                            static_cast<double>(height)};
        },
    .done =
        [](void* data, wl_output*) {
          auto& each = *static_cast<Each*>(data);
          each.told = true;
          each.owner->update();
        },
    .scale = [](void* data, wl_output*,
                std::int32_t scale) { static_cast<Each*>(data)->wholeScale = std::max(scale, 1); },
    .name = [](void* data, wl_output*, const char* name) { static_cast<Each*>(data)->name = name; },
    .description = [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener Outputs::placeListener{
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
          static_cast<Each*>(data)->placeCorner = {static_cast<double>(x), static_cast<double>(y)};
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
          static_cast<Each*>(data)->placeSize = {static_cast<double>(width),
                                                 static_cast<double>(height)};
        },
    // Sent by old versions; newer ones end with the output's own.
    .done = [](void* data, zxdg_output_v1*) { static_cast<Each*>(data)->owner->update(); },
    .name = [](void* data, zxdg_output_v1*,
               const char* name) { static_cast<Each*>(data)->name = name; },
    .description = [](void*, zxdg_output_v1*, const char*) {},
};

Outputs::Outputs(std::function<void()> changed) : changed_(std::move(changed)) {}

Outputs::~Outputs() = default;

wl_output* Outputs::handle(std::uint32_t id) const {
  const auto found = std::ranges::find_if(all_, [&](const auto& each) { return each->id == id; });
  return found == all_.end() ? nullptr : (*found)->output.get();
}

void Outputs::add(std::uint32_t id, WlOutputPtr output) {
  auto each = std::make_unique<Each>();
  each->owner = this;
  each->id = id;
  each->output = std::move(output);
  wl_output_add_listener(each->output.get(), &outputListener, each.get());
  if (manager_ != nullptr) askPlace(*each, manager_);
  all_.push_back(std::move(each));
}

void Outputs::remove(std::uint32_t id) {
  if (std::erase_if(all_, [&](const auto& each) { return each->id == id; }) > 0) update();
}

void Outputs::clear() {
  all_.clear();
  layout_ = {};
  manager_ = nullptr;
}

void Outputs::setManager(zxdg_output_manager_v1* manager) {
  manager_ = manager;
  for (const auto& each : all_) askPlace(*each, manager_);
}

void Outputs::askPlace(Each& each, zxdg_output_manager_v1* manager) {
  each.place.reset(zxdg_output_manager_v1_get_xdg_output(manager, each.output.get()));
  zxdg_output_v1_add_listener(each.place.get(), &placeListener, &each);
}

void Outputs::update() {
  OutputLayout layout;
  for (const auto& each : all_) {
    if (each->isComplete()) layout.outputs.push_back(each->asOutput());
  }
  if (layout == layout_) return;
  layout_ = std::move(layout);
  changed_();
}

}  // namespace vellora
