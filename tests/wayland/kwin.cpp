#include <array>
#include <cmath>
#include <cstring>
#include <fstream>

#include <fcntl.h>
#include <fmt/format.h>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <unistd.h>

#include "e2e/process.h"
#include "platform/linux/glib/glib_ptr.h"
#include "wayland/compositor.h"

namespace vellora::e2e {
namespace {

using nlohmann::json;

constexpr const char* service = "org.kde.KWin";
constexpr const char* teller = "org.vellora.Test";

// KWin, asked and steered by small scripts, each loaded, run and unloaded.
class KWin final : public Compositor {
 public:
  explicit KWin(GObjectPtr<GDBusConnection> bus) : bus_(std::move(bus)) {
    filter_ = g_dbus_connection_add_filter(bus_.get(), hear, this, nullptr);
  }
  ~KWin() override { g_dbus_connection_remove_filter(bus_.get(), filter_); }
  KWin(const KWin&) = delete;
  KWin& operator=(const KWin&) = delete;

  std::string name() const override { return "KWin"; }

  std::optional<witness::Picture> whole() const override {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    const GObjectPtr<GUnixFDList> list(g_unix_fd_list_new_from_array(&ends[1], 1));
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "native-resolution", g_variant_new_boolean(FALSE));
    const GVariantPtr reply(g_dbus_connection_call_with_unix_fd_list_sync(
        bus_.get(), "org.kde.KWin.ScreenShot2", "/org/kde/KWin/ScreenShot2",
        "org.kde.KWin.ScreenShot2", "CaptureWorkspace", g_variant_new("(a{sv}h)", &options, 0),
        G_VARIANT_TYPE("(a{sv})"), G_DBUS_CALL_FLAGS_NONE, patience, list.get(), nullptr, nullptr,
        nullptr));
    // The list has taken over its end, and closes it when it goes.
    std::optional<witness::Picture> picture;
    if (reply) picture = readPicture(ends[0], reply.get());
    close(ends[0]);
    return picture;
  }

  std::optional<Rect> contentOf(pid_t process) const override {
    const auto told = run(
        fmt::format("var told = 'null'; each(function (c) {{ if (c.pid === {} && !c.skipTaskbar)"
                    " told = JSON.stringify([c.bufferGeometry.x, c.bufferGeometry.y,"
                    " c.bufferGeometry.width, c.bufferGeometry.height]); }}); tell(told);",
                    process));
    if (!told || !told->is_array()) return std::nullopt;
    const json& four = *told;
    return Rect{four[0].get<double>(), four[1].get<double>(), four[2].get<double>(),
                four[3].get<double>()};
  }

  void place(pid_t process, const Rect& frame) override {
    run(
        fmt::format("each(function (c) {{ if (c.pid === {}) {{ c.noBorder = true;"
                    " c.frameGeometry = {{x: {}, y: {}, width: {}, height: {}}}; }} }});"
                    " tell('true');",
                    process, frame.x, frame.y, frame.width, frame.height));
  }

  void activate(pid_t process) override {
    run(
        fmt::format("each(function (c) {{ if (c.pid === {}) workspace.activeClient = c; }});"
                    " tell('true');",
                    process));
  }

  bool isActive(pid_t process) const override {
    const auto told = run(fmt::format(
        "var a = workspace.activeClient; tell(a && a.pid === {} ? 'true' : 'false');", process));
    return told && told->is_boolean() && told->get<bool>();
  }

  void setScale(int output, double scale) override {
    outputOf({VELLORA_DESK_OUTPUT, std::to_string(output), "scale", fmt::format("{}", scale)});
  }

  bool setPlugged(int output, bool plugged) override {
    outputOf({VELLORA_DESK_OUTPUT, std::to_string(output), plugged ? "enable" : "disable"});
    return true;
  }

 private:
  static constexpr int patience = 30'000;  // milliseconds

  static GDBusMessage* hear(GDBusConnection*, GDBusMessage* message, gboolean incoming,
                            gpointer data) {
    const char* const interface = g_dbus_message_get_interface(message);
    if (incoming == FALSE || interface == nullptr || std::strcmp(interface, teller) != 0) {
      return message;
    }
    const char* text = nullptr;
    GVariant* const body = g_dbus_message_get_body(message);
    if (body != nullptr && g_variant_is_of_type(body, G_VARIANT_TYPE("(s)"))) {
      g_variant_get(body, "(&s)", &text);
    }
    // On the connection's own thread: handed over through a pipe-like queue of one.
    g_async_queue_push(static_cast<KWin*>(data)->told_.get(), g_strdup(text ? text : "null"));
    g_object_unref(message);
    return nullptr;
  }

  bool call(const std::string& path, const char* interface, const char* method, GVariant* arguments,
            GVariantPtr* reply = nullptr) const {
    GVariantPtr answer(
        g_dbus_connection_call_sync(bus_.get(), service, path.c_str(), interface, method, arguments,
                                    nullptr, G_DBUS_CALL_FLAGS_NONE, patience, nullptr, nullptr));
    const bool worked = answer != nullptr;
    if (reply != nullptr) *reply = std::move(answer);
    return worked;
  }

  // What the script told, by `tell(JSON)`; it has `each(function (window))` too.
  std::optional<json> run(const std::string& script) const {
    std::string file = "/tmp/vellora-kwin-XXXXXX";
    const int descriptor = mkstemp(file.data());
    if (descriptor < 0) return std::nullopt;
    close(descriptor);
    std::ofstream(file) << "function each(f) { workspace.clientList().forEach(f); }\n"
                        << fmt::format(
                               "function tell(t) {{ callDBus('{}', '/', '{}', 'Tell', t); }}\n",
                               g_dbus_connection_get_unique_name(bus_.get()), teller)
                        << script << "\n";
    const std::string name = fmt::format("vellora-test-{}", ++scripts_);
    GVariantPtr loaded;
    std::optional<json> result;
    if (call("/Scripting", "org.kde.kwin.Scripting", "loadScript",
             g_variant_new("(ss)", file.c_str(), name.c_str()), &loaded)) {
      gint32 number = -1;
      g_variant_get(loaded.get(), "(i)", &number);
      struct Free {
        void operator()(char* text) const { g_free(text); }
      };
      // What an earlier script told too late is no answer to this one.
      while (const std::unique_ptr<char, Free> late{
          static_cast<char*>(g_async_queue_try_pop(told_.get()))}) {
      }
      call(fmt::format("/{}", number), "org.kde.kwin.Script", "run", nullptr);
      const std::unique_ptr<char, Free> text(static_cast<char*>(
          g_async_queue_timeout_pop(told_.get(), static_cast<guint64>(patience) * 1000)));
      if (text) result = json::parse(text.get(), nullptr, false);
      call("/Scripting", "org.kde.kwin.Scripting", "unloadScript",
           g_variant_new("(s)", name.c_str()));
    }
    unlink(file.c_str());
    return result;
  }

  // The rows as KWin writes them: QImage's formats of four bytes a pixel, blue first.
  static std::optional<witness::Picture> readPicture(int from, GVariant* reply) {
    const GVariantPtr results(g_variant_get_child_value(reply, 0));
    guint32 width = 0;
    guint32 height = 0;
    guint32 stride = 0;
    g_variant_lookup(results.get(), "width", "u", &width);
    g_variant_lookup(results.get(), "height", "u", &height);
    g_variant_lookup(results.get(), "stride", "u", &stride);
    if (width == 0 || height == 0 || stride < width * 4) return std::nullopt;
    std::vector<unsigned char> bytes(std::size_t{stride} * height);
    std::size_t have = 0;
    while (have < bytes.size()) {
      pollfd ready{from, POLLIN, 0};
      if (poll(&ready, 1, patience) <= 0) return std::nullopt;
      const ssize_t count = read(from, bytes.data() + have, bytes.size() - have);
      if (count <= 0) return std::nullopt;
      have += static_cast<std::size_t>(count);
    }
    witness::Picture picture;
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    picture.pixels.resize(std::size_t{width} * height);
    for (std::size_t y = 0; y < height; ++y) {
      for (std::size_t x = 0; x < width; ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, &bytes[y * stride + x * 4], 4);
        picture.pixels[y * width + x] = pixel & 0xFFFFFFU;
      }
    }
    return picture;
  }

  struct Unref {
    void operator()(GAsyncQueue* queue) const { g_async_queue_unref(queue); }
  };
  GObjectPtr<GDBusConnection> bus_;
  std::unique_ptr<GAsyncQueue, Unref> told_{g_async_queue_new_full(g_free)};
  guint filter_ = 0;
  mutable int scripts_ = 0;
};

}  // namespace

std::unique_ptr<Compositor> openKWin() {
  GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!bus) return nullptr;
  return std::make_unique<KWin>(std::move(bus));
}

}  // namespace vellora::e2e
