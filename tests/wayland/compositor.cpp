#include "wayland/compositor.h"

#include <cstdlib>

#include "e2e/process.h"

namespace vellora::e2e {

std::unique_ptr<Compositor> Compositor::open() {
  return std::getenv("SWAYSOCK") != nullptr ? openSway() : openKWin();
}

Process Compositor::keepClicking(Point place) const {
  const auto layout = whole();
  const auto text = [](double number) { return std::to_string(static_cast<int>(number)); };
  return Process({VELLORA_DESK_POINTER, text(place.x), text(place.y),
                  text(layout ? layout->width : 0), text(layout ? layout->height : 0)},
                 "/dev/null");
}

void Compositor::rememberAlone() {
  const auto picture = whole();
  if (!picture) return;
  alone_.emplace();
  static_cast<witness::Picture&>(*alone_) = *picture;
  alone_->frame = {};  // one pixel a point, whatever the window's size
}

}  // namespace vellora::e2e
