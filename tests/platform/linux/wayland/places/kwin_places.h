#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <fcntl.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "platform/linux/glib/session_bus.h"
#include "platform/linux/wayland/places/places_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {

// A window on KWin, which the test moves about by scripts and of which KWin takes pictures.
class KWinPlaces : public PlacesFixture {
 protected:
  // Has KWin run a line of a script on the active window `w`.
  void command(const std::string& words) {
    // Of scripts with one name KWin takes the first only.
    const std::string name = folder.path().filename().string() + std::to_string(++scripts);
    folder.write(name, "var w = workspace.activeClient; " + words);
    const GVariantPtr number(call("/Scripting", "org.kde.kwin.Scripting", "loadScript",
                                  g_variant_new("(ss)", (folder / name).c_str(), name.c_str())));
    ASSERT_TRUE(number);
    ASSERT_TRUE(GVariantPtr(call("/Scripting", "org.kde.kwin.Scripting", "start", nullptr)));
  }

  // KWin 5.27's own picture: premultiplied, blue first.
  ScreenPicture picture() override {
    const std::string file = folder / "screen";
    const int fd = open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const GObjectPtr<GUnixFDList> files(g_unix_fd_list_new());
    const int index = g_unix_fd_list_append(files.get(), fd, nullptr);
    GVariantDict options;
    g_variant_dict_init(&options, nullptr);
    g_variant_dict_insert(&options, "native-resolution", "b", TRUE);
    const GVariantPtr answer(g_dbus_connection_call_with_unix_fd_list_sync(
        bus.get(), "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2",
        "CaptureActiveScreen", g_variant_new("(@a{sv}h)", g_variant_dict_end(&options), index),
        G_VARIANT_TYPE("(a{sv})"), G_DBUS_CALL_FLAGS_NONE, -1, files.get(), nullptr, nullptr,
        nullptr));
    close(fd);
    if (!answer) return {};
    const GVariantPtr facts(g_variant_get_child_value(answer.get(), 0));
    guint32 width = 0, height = 0, stride = 0;
    g_variant_lookup(facts.get(), "width", "u", &width);
    g_variant_lookup(facts.get(), "height", "u", &height);
    g_variant_lookup(facts.get(), "stride", "u", &stride);
    // The pixels come after the answer.
    const std::size_t size = std::size_t{stride} * height;
    std::string bytes;
    eventually([&] {
      bytes = readText(file);
      return bytes.size() >= size;
    });
    ScreenPicture result{static_cast<int>(width), static_cast<int>(height), {}};
    for (std::size_t y = 0; y < height; ++y) {
      for (std::size_t x = 0; x < width; ++x) {
        const std::size_t at = y * stride + x * 4;
        result.pixels += {bytes[at + 2], bytes[at + 1], bytes[at]};
      }
    }
    return result;
  }

  void goThroughPlaces() {
    ASSERT_TRUE(eventuallyRight());
    command("w.frameGeometry = {x: 300, y: 200, width: 500, height: 400};");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x > 300; }));
    command("w.frameGeometry = {x: 101, y: 57, width: 500, height: 400};");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x < 200; }));
    command("w.setMaximize(true, true);");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 13; }));
    command("w.setMaximize(false, false);");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x > 100; }));
    command("w.fullScreen = true;");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 13; }));
  }

  GVariant* call(const std::string& path, const char* interface, const char* method,
                 GVariant* arguments) {
    return g_dbus_connection_call_sync(bus.get(), "org.kde.KWin", path.c_str(), interface, method,
                                       arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                                       nullptr);
  }

  TemporaryFolder folder;
  SessionBus bus = connectToSessionBus();
  int scripts = 0;
};

}  // namespace vellora
