#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/wayland/session/output_layout.h"
#include "platform/linux/wayland/session/wayland_ptr.h"

namespace vellora {

// The outputs that a compositor tells of, as they come, change and go. One is in the layout once
// the compositor has told all of it. Main thread.
class Outputs {
 public:
  // `changed` is called whenever the layout has become another one.
  explicit Outputs(std::function<void()> changed);
  ~Outputs();
  Outputs(const Outputs&) = delete;
  Outputs& operator=(const Outputs&) = delete;

  const OutputLayout& layout() const { return layout_; }
  // For surfaces; null when there is none of that number.
  wl_output* handle(std::uint32_t id) const;

  // What the registry tells. `id` is the global's name.
  void add(std::uint32_t id, WlOutputPtr output);
  void remove(std::uint32_t id);
  // Forgets all of them, and tells nobody.
  void clear();
  // Where outputs stand is asked of `manager`, which must outlive this. Without one an output tells
  // it itself, and whole-numbered scales only.
  void setManager(zxdg_output_manager_v1* manager);

 private:
  struct Each;

  static void askPlace(Each& each, zxdg_output_manager_v1* manager);
  static const wl_output_listener outputListener;
  static const zxdg_output_v1_listener placeListener;
  void update();

  std::function<void()> changed_;
  zxdg_output_manager_v1* manager_ = nullptr;
  std::vector<std::unique_ptr<Each>> all_;
  OutputLayout layout_;
};

}  // namespace vellora
