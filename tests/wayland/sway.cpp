#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "e2e/process.h"
#include "wayland/compositor.h"
#include "witness/picture_files.h"

namespace vellora::e2e {
namespace {

using nlohmann::json;

// The first node of that process, below `node`.
const json* nodeOf(const json& node, pid_t process) {
  if (node.value("pid", 0) == process) return &node;
  for (const char* const list : {"nodes", "floating_nodes"}) {
    if (!node.contains(list)) continue;
    for (const json& child : node[list]) {
      if (const json* const found = nodeOf(child, process)) return found;
    }
  }
  return nullptr;
}

Rect rectOf(const json& value) {
  return {value["x"].get<double>(), value["y"].get<double>(), value["width"].get<double>(),
          value["height"].get<double>()};
}

class Sway final : public Compositor {
 public:
  std::string name() const override { return "sway"; }

  std::optional<witness::Picture> whole() const override {
    return witness::readPpm(outputOf({"grim", "-s", "1", "-t", "ppm", "-"}));
  }

  std::optional<Rect> contentOf(pid_t process) const override {
    const json tree = askForTree();
    const json* const node = nodeOf(tree, process);
    if (node == nullptr) return std::nullopt;
    const Rect frame = rectOf((*node)["rect"]);
    const Rect inside = rectOf((*node)["window_rect"]);
    return Rect{frame.x + inside.x, frame.y + inside.y, inside.width, inside.height};
  }

  void place(pid_t process, const Rect& frame) override {
    command(
        fmt::format("[pid={}] floating enable, border none, resize set {} {}, "
                    "move absolute position {} {}",
                    process, frame.width, frame.height, frame.x, frame.y));
  }

  void activate(pid_t process) override { command(fmt::format("[pid={}] focus", process)); }

  bool isActive(pid_t process) const override {
    const json tree = askForTree();
    const json* const node = nodeOf(tree, process);
    return node != nullptr && node->value("focused", false);
  }

  void setScale(int output, double scale) override {
    command(fmt::format("output HEADLESS-{} scale {}", output + 1, scale));
  }

  bool setPlugged(int, bool) override { return false; }

 private:
  static json askForTree() {
    return json::parse(outputOf({"swaymsg", "--raw", "-t", "get_tree"}), nullptr, false);
  }
  static void command(const std::string& words) { outputOf({"swaymsg", "--quiet", "--", words}); }
};

}  // namespace

std::unique_ptr<Compositor> openSway() { return std::make_unique<Sway>(); }

}  // namespace vellora::e2e
