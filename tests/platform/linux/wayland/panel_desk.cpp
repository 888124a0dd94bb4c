#include "platform/linux/wayland/panel_desk.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include <dlfcn.h>
#include <sys/socket.h>

#include "support/temporary_folder.h"

namespace {

// What libwayland sends passes through here: this program's sendmsg stands before the C library's.
std::size_t sentBytes = 0;

}  // namespace

extern "C" ssize_t sendmsg(int fd, const msghdr* message, int flags) {
  using Function = ssize_t (*)(int, const msghdr*, int);
  static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sendmsg"));
  const ssize_t sent = original(fd, message, flags);
  if (sent > 0) sentBytes += static_cast<std::size_t>(sent);
  return sent;
}

namespace vellora {
namespace {

std::string outputOf(const std::string& command) {
  std::string text;
  FILE* const pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return text;
  std::array<char, 4096> part{};
  while (const std::size_t length = std::fread(part.data(), 1, part.size(), pipe)) {
    text.append(part.data(), length);
  }
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return text;
}

const nlohmann::json* focusedNode(const nlohmann::json& node) {
  if (node.value("focused", false)) return &node;
  for (const char* const list : {"nodes", "floating_nodes"}) {
    if (!node.contains(list)) continue;
    for (const nlohmann::json& child : node[list]) {
      if (const auto* const found = focusedNode(child)) return found;
    }
  }
  return nullptr;
}

void collectWindows(const nlohmann::json& node, std::vector<std::int64_t>& ids) {
  if (node.contains("pid")) ids.push_back(node["id"].get<std::int64_t>());
  for (const char* const list : {"nodes", "floating_nodes"}) {
    if (!node.contains(list)) continue;
    for (const nlohmann::json& child : node[list]) collectWindows(child, ids);
  }
}

bool isNear(std::uint32_t a, std::uint32_t b, int tolerance) {
  for (int shift = 0; shift < 24; shift += 8) {
    const int difference =
        static_cast<int>((a >> shift) & 0xff) - static_cast<int>((b >> shift) & 0xff);
    if (std::abs(difference) > tolerance) return false;
  }
  return true;
}

}  // namespace

std::shared_ptr<const CairoImage> chequeredPicture(double width, double height, double scale,
                                                   unsigned seed) {
  CairoSurfacePtr pixels = makePixels(static_cast<std::int64_t>(width * scale),
                                      static_cast<std::int64_t>(height * scale));
  unsigned char* const data = cairo_image_surface_get_data(pixels.get());
  const int stride = cairo_image_surface_get_stride(pixels.get());
  std::uint32_t value = seed * 2654435761U + 1;
  for (int y = 0; y < cairo_image_surface_get_height(pixels.get()); ++y) {
    for (int x = 0; x < cairo_image_surface_get_width(pixels.get()); ++x) {
      value = value * 1664525U + 1013904223U;
      const std::uint32_t colors = value >> 8;
      const std::uint32_t pixel =
          (x / 8 + y / 8) % 2 == 0 ? 0xff000000U | colors : 0x80000000U | (colors & 0x7f7f7f);
      std::memcpy(data + y * stride + x * 4, &pixel, sizeof pixel);
    }
  }
  cairo_surface_mark_dirty(pixels.get());
  return std::make_shared<CairoImage>(std::move(pixels), Size{width, height},
                                      Rect{0, 0, width, height});
}

void Sway::command(const std::string& words) const { outputOf("swaymsg -q -- '" + words + "'"); }

nlohmann::json Sway::ask(const std::string& kind) const {
  return nlohmann::json::parse(outputOf("swaymsg -r -t " + kind));
}

CairoSurfacePtr Sway::picture(const std::string& output) const {
  const TemporaryFolder folder;
  const std::string file = folder.path() / "output.png";
  double scale = 1;
  for (const auto& each : ask("get_outputs")) {
    if (each["name"] == output) scale = each["scale"];
  }
  outputOf("grim -s " + std::to_string(scale) + " -o " + output + " " + file);
  return CairoSurfacePtr(cairo_image_surface_create_from_png(file.c_str()));
}

std::int64_t Sway::focused() const {
  const nlohmann::json tree = ask("get_tree");
  const auto* const node = focusedNode(tree);
  return node == nullptr ? -1 : (*node)["id"].get<std::int64_t>();
}

std::vector<std::int64_t> Sway::windows() const {
  std::vector<std::int64_t> ids;
  collectWindows(ask("get_tree"), ids);
  return ids;
}

pid_t Sway::pid() const {
  std::ifstream pids(std::getenv("VELLORA_SESSION_PIDS"));
  std::string name;
  pid_t pid = 0;
  while (pids >> name >> pid) {
    if (name == "sway") return pid;
  }
  throw std::runtime_error("the session has no sway");
}

WaylandDesk::WaylandDesk(Panels panels)
    : session(std::make_shared<WaylandSession>(std::getenv("WAYLAND_DISPLAY"))),
      view(std::make_unique<HostedView>([this] { return session->layout().primaryScale(); })),
      panel(std::make_unique<WaylandPanel>(session)) {
  view->setDrawFunction([this](Surface& surface) {
    ++drawings;
    for (const Placed& each : pictures) surface.drawImage(*each.picture, each.destination);
  });
  if (panels == Panels::configured) panel->configure(*view);
}

std::size_t WaylandDesk::bytesSent() const { return sentBytes; }

void WaylandDesk::settle() {
  bool isDone = false;
  static constexpr wl_callback_listener listener{
      .done = [](void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; }};
  runLoopDry();
  const WlCallbackPtr callback(wl_display_sync(session->display()));
  wl_callback_add_listener(callback.get(), &listener, &isDone);
  EXPECT_TRUE(runLoopUntil([&] { return isDone; }));
  runLoopDry();
}

void WaylandDesk::show(const Rect& frame) {
  move(frame);
  panel->orderFrontRegardless();
}

void WaylandDesk::move(const Rect& frame) {
  const double height = session->layout().primaryHeight().value_or(0);
  panel->setFrame({frame.x, height - frame.y - frame.height, frame.width, frame.height});
  view->setFrame({0, 0, frame.width, frame.height});
}

CairoSurfacePtr WaylandDesk::expected(cairo_surface_t* background, int left, int top,
                                      const Size& frame, double scale) const {
  const auto bitmap =
      CairoBitmap::make(std::lround(frame.width * scale), std::lround(frame.height * scale));
  CairoSurface surface(bitmap->pixels(), scale);
  for (const Placed& each : pictures) surface.drawImage(*each.picture, each.destination);
  CairoSurfacePtr whole = makePixels(cairo_image_surface_get_width(background),
                                     cairo_image_surface_get_height(background));
  const CairoContextPtr context(cairo_create(whole.get()));
  cairo_set_source_surface(context.get(), background, 0, 0);
  cairo_paint(context.get());
  cairo_set_source_surface(context.get(), bitmap->pixels(), left, top);
  cairo_paint(context.get());
  cairo_surface_flush(whole.get());
  return whole;
}

testing::AssertionResult WaylandDesk::comesToLook(const char* output, cairo_surface_t* wanted) {
  testing::AssertionResult alike = testing::AssertionFailure();
  runLoopUntil([&] {
    settle();
    return bool(alike = areAlike(sway.picture(output).get(), wanted));
  });
  return alike;
}

testing::AssertionResult WaylandDesk::comesToShow(const char* output, cairo_surface_t* before,
                                                  int left, int top, const Size& frame,
                                                  double scale) {
  return comesToLook(output, expected(before, left, top, frame, scale).get());
}

testing::AssertionResult WaylandDesk::isShown() {
  const bool drawn = runLoopUntil([&] {
    settle();
    const int before = drawings;
    view->setNeedsDisplay();
    runLoopDry();
    return drawings > before;
  });
  return drawn ? testing::AssertionSuccess() : testing::AssertionFailure() << "it is not drawn";
}

int WaylandDesk::buffers() {
  std::ifstream maps("/proc/self/maps");
  std::string line;
  int count = 0;
  while (std::getline(maps, line)) count += line.find("vellora-panel") != line.npos ? 1 : 0;
  return count;
}

int WaylandDesk::kilobytesInBuffers() {
  std::ifstream maps("/proc/self/smaps");
  std::string line;
  bool isBuffer = false;
  int sum = 0;
  while (std::getline(maps, line)) {
    if (line.starts_with("Rss:")) {
      if (isBuffer) sum += std::stoi(line.substr(4));
    } else if (line.find('-') < line.find(' ')) {
      isBuffer = line.find("vellora-panel") != line.npos;
    }
  }
  return sum;
}

std::uint32_t pixelAt(cairo_surface_t* surface, int x, int y) {
  std::uint32_t pixel = 0;
  std::memcpy(
      &pixel,
      cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface) + x * 4,
      sizeof pixel);
  return pixel;
}

testing::AssertionResult areAlike(cairo_surface_t* seen, cairo_surface_t* expected, int tolerance) {
  const int width = cairo_image_surface_get_width(expected);
  const int height = cairo_image_surface_get_height(expected);
  if (cairo_image_surface_get_width(seen) != width ||
      cairo_image_surface_get_height(seen) != height) {
    return testing::AssertionFailure() << "the sizes are others";
  }
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::uint32_t there = pixelAt(seen, x, y);
      const std::uint32_t wanted = pixelAt(expected, x, y);
      if (isNear(there, wanted, tolerance)) continue;
      std::ostringstream text;
      text << "at " << x << ", " << y << ": " << std::hex << there << ", not " << wanted;
      return testing::AssertionFailure() << text.str();
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace vellora
