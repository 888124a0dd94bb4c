#pragma once

#include <string>

namespace vellora {

// A window's node as sway 1.7 writes it, as far as it is read.
inline std::string i3Window(int id, int process, const std::string& application, bool isFocused,
                            const std::string& rect, const std::string& windowRect,
                            bool isVisible = true) {
  return R"({"id":)" + std::to_string(id) + R"(,"type":"con","pid":)" + std::to_string(process) +
         R"(,"app_id":")" + application + R"(","focused":)" + (isFocused ? "true" : "false") +
         R"(,"visible":)" + (isVisible ? "true" : "false") + R"(,"shell":"xdg_shell","rect":)" +
         rect + R"(,"window_rect":)" + windowRect + R"(,"nodes":[],"floating_nodes":[]})";
}

inline std::string i3Rect(int x, int y, int width, int height) {
  return R"({"x":)" + std::to_string(x) + R"(,"y":)" + std::to_string(y) + R"(,"width":)" +
         std::to_string(width) + R"(,"height":)" + std::to_string(height) + "}";
}

// A tree with one output and one workspace, whose children are given; `focus` are their numbers,
// those in front later first.
inline std::string i3Tree(const std::string& tiled, const std::string& floating = "",
                          const std::string& focus = "") {
  return R"({"id":1,"type":"root","name":"root","nodes":[{"id":2,"type":"output","name":"DP-1",)"
         R"("nodes":[{"id":3,"type":"workspace","name":"1","focused":false,"nodes":[)" +
         tiled + R"(],"floating_nodes":[)" + floating + R"(],"focus":[)" + focus +
         R"(]}],"floating_nodes":[],"focus":[3]}],"floating_nodes":[],"focus":[2]})";
}

inline std::string i3OneWindow(int process, int x = 0) {
  return i3Tree(i3Window(7, process, "org.example.Player", true, i3Rect(x, 27, 1280, 773),
                         i3Rect(2, 0, 1276, 771)));
}

}  // namespace vellora
