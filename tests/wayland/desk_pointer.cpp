// Moves the pointer of a Wayland desktop to a place and clicks there four times a second, until it
// is ended: desk_pointer X Y WIDTH HEIGHT, all in points of the layout, which is so large. By
// wlroots' virtual pointer or by KWin's fake input, whichever the compositor has. Exit status 1
// where it has neither.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <poll.h>
#include <wayland-client.h>

#include "fake-input-client-protocol.h"
#include "virtual-pointer-client-protocol.h"

namespace {

constexpr std::uint32_t mainButton = 0x110;  // BTN_LEFT of Linux's input events

struct Means {
  zwlr_virtual_pointer_manager_v1* pointers = nullptr;
  org_kde_kwin_fake_input* input = nullptr;
};

void found(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
           std::uint32_t version) {
  auto& means = *static_cast<Means*>(data);
  if (std::strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0) {
    means.pointers = static_cast<zwlr_virtual_pointer_manager_v1*>(
        wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
  } else if (std::strcmp(interface, org_kde_kwin_fake_input_interface.name) == 0 && version >= 3) {
    means.input = static_cast<org_kde_kwin_fake_input*>(
        wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, 3));
  }
}

void gone(void*, wl_registry*, std::uint32_t) {}

class Pointer {
 public:
  Pointer(wl_display* display, const Means& means, std::uint32_t width, std::uint32_t height)
      : display_(display), input_(means.input), width_(width), height_(height) {
    if (means.pointers != nullptr) {
      virtual_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(means.pointers, nullptr);
    } else {
      org_kde_kwin_fake_input_authenticate(input_, "desk_pointer", "a test");
    }
    wl_display_roundtrip(display_);
  }

  void move(std::uint32_t x, std::uint32_t y) {
    if (virtual_ != nullptr) {
      zwlr_virtual_pointer_v1_motion_absolute(virtual_, ++time_, x, y, width_, height_);
    } else {
      org_kde_kwin_fake_input_pointer_motion_absolute(input_, wl_fixed_from_int(int(x)),
                                                      wl_fixed_from_int(int(y)));
    }
    finish();
  }

  void button(bool pressed) {
    if (virtual_ != nullptr) {
      zwlr_virtual_pointer_v1_button(virtual_, ++time_, mainButton, pressed ? 1 : 0);
    } else {
      org_kde_kwin_fake_input_button(input_, mainButton, pressed ? 1 : 0);
    }
    finish();
  }

 private:
  void finish() {
    if (virtual_ != nullptr) zwlr_virtual_pointer_v1_frame(virtual_);
    wl_display_roundtrip(display_);
  }

  wl_display* display_;
  org_kde_kwin_fake_input* input_;
  zwlr_virtual_pointer_v1* virtual_ = nullptr;
  std::uint32_t width_;
  std::uint32_t height_;
  std::uint32_t time_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const auto number = [argv](int index) {
    return static_cast<std::uint32_t>(std::strtoul(argv[index], nullptr, 10));
  };
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  Means means;
  const wl_registry_listener listener{found, gone};
  wl_registry_add_listener(wl_display_get_registry(display), &listener, &means);
  wl_display_roundtrip(display);
  if (means.pointers == nullptr && means.input == nullptr) return 1;
  Pointer pointer(display, means, number(3), number(4));
  while (wl_display_get_error(display) == 0) {
    pointer.move(number(1) + 1, number(2));
    pointer.move(number(1), number(2));
    pointer.button(true);
    pointer.button(false);
    poll(nullptr, 0, 250);
  }
  return 1;
}
