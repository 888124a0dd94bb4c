// Sets an output of KWin: desk_output NUMBER scale FACTOR, or desk_output NUMBER enable|disable.
// Outputs are counted from 0, as KWin announces them. Exit status 0 once KWin says that it is done.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include <wayland-client.h>

#include "output-device-client-protocol.h"
#include "output-management-client-protocol.h"

namespace {

struct Means {
  kde_output_management_v2* management = nullptr;
  std::vector<kde_output_device_v2*> outputs;
};

void found(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
           std::uint32_t) {
  auto& means = *static_cast<Means*>(data);
  if (std::strcmp(interface, kde_output_management_v2_interface.name) == 0) {
    means.management = static_cast<kde_output_management_v2*>(
        wl_registry_bind(registry, name, &kde_output_management_v2_interface, 1));
  } else if (std::strcmp(interface, kde_output_device_v2_interface.name) == 0) {
    means.outputs.push_back(static_cast<kde_output_device_v2*>(
        wl_registry_bind(registry, name, &kde_output_device_v2_interface, 1)));
  }
}

void gone(void*, wl_registry*, std::uint32_t) {}

void applied(void* data, kde_output_configuration_v2*) { *static_cast<int*>(data) = 1; }
void failed(void* data, kde_output_configuration_v2*) { *static_cast<int*>(data) = -1; }

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  Means means;
  const wl_registry_listener registry{found, gone};
  wl_registry_add_listener(wl_display_get_registry(display), &registry, &means);
  wl_display_roundtrip(display);
  const auto number = static_cast<std::size_t>(std::strtoul(argv[1], nullptr, 10));
  if (means.management == nullptr || number >= means.outputs.size()) return 1;
  kde_output_configuration_v2* const configuration =
      kde_output_management_v2_create_configuration(means.management);
  int answer = 0;
  const kde_output_configuration_v2_listener listener{applied, failed};
  kde_output_configuration_v2_add_listener(configuration, &listener, &answer);
  kde_output_device_v2* const output = means.outputs[number];
  const std::string_view what = argv[2];
  if (what == "scale" && argc == 4) {
    kde_output_configuration_v2_scale(configuration, output,
                                      wl_fixed_from_double(std::strtod(argv[3], nullptr)));
  } else {
    kde_output_configuration_v2_enable(configuration, output, what == "enable" ? 1 : 0);
  }
  kde_output_configuration_v2_apply(configuration);
  while (answer == 0 && wl_display_dispatch(display) >= 0) {
  }
  wl_display_disconnect(display);
  return answer > 0 ? 0 : 1;
}
