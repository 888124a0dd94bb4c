#pragma once

#include <string>

namespace vellora {

// What Hyprland's wiki and its hyprctl say that it answers, as far as it is read.

inline std::string hyprlandMonitor(int id, const std::string& name, int workspace,
                                   int special = 0) {
  return R"({"id": )" + std::to_string(id) + R"(, "name": ")" + name +
         R"(", "width": 1920, "height": 1080, "x": 0, "y": 0, "activeWorkspace": {"id": )" +
         std::to_string(workspace) + R"(, "name": "1"}, "specialWorkspace": {"id": )" +
         std::to_string(special) + R"(, "name": ""}, "scale": 1.00, "focused": true})";
}

struct HyprlandClient {
  int process = 0;
  std::string address{};
  std::string place = R"("at": [22, 53], "size": [1876, 1005])";
  int workspace = 1;
  int focusHistory = 0;
  std::string more{};  // fields that count instead of the usual ones, ", " first
};

// Of two fields of one name the last counts to nlohmann/json.
inline std::string hyprlandClient(const HyprlandClient& client) {
  return R"({"address": ")" + client.address + R"(", "mapped": true, "hidden": false, )" +
         client.place + R"(, "workspace": {"id": )" + std::to_string(client.workspace) +
         R"(, "name": "1"}, "floating": false, "monitor": 0, "class": "org.example.Player", )" +
         R"("title": "Lyrics", "pid": )" + std::to_string(client.process) +
         R"(, "xwayland": false, "pinned": false, "fullscreen": 0, "grouped": [], )" +
         R"("focusHistoryID": )" + std::to_string(client.focusHistory) + client.more + "}";
}

}  // namespace vellora
