#include "platform/linux/wayland/locator/kwin_script.h"

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "base/environment.h"
#include "base/files.h"
#include "base/process.h"

namespace vellora {

namespace {

// In what is before the marks stands where to report to.
constexpr std::string_view body = R"js(
function box(r) { return [r.x, r.y, r.width, r.height]; }

function isShown(w) {
  return !w.minimized && !w.hidden && (w.onAllDesktops || w.desktop === workspace.currentDesktop);
}

function report() {
  var told = [];
  var windows = workspace.clientList();
  for (var i = 0; i < windows.length; ++i) {
    var w = windows[i];
    told.push({
      process: w.pid,
      class: String(w.resourceClass),
      x11: w.windowId !== undefined,
      frame: box(w.frameGeometry),
      buffer: box(w.bufferGeometry),
      visible: isShown(w),
      active: w === workspace.activeClient,
      order: w.stackingOrder
    });
  }
  callDBus(busName, objectPath, interfaceName, reportMethod, JSON.stringify(told));
}

var timer = new QTimer();
timer.singleShot = true;
timer.interval = 15;
timer.timeout.connect(report);
function reportSoon() { if (!timer.active) timer.start(); }

var changes = ["frameGeometryChanged", "bufferGeometryChanged", "minimizedChanged", "hiddenChanged",
               "desktopChanged", "windowClassChanged", "desktopFileNameChanged", "windowShown",
               "windowHidden", "fullScreenChanged", "stackingOrderChanged"];
function follow(w) {
  for (var i = 0; i < changes.length; ++i) if (w[changes[i]]) w[changes[i]].connect(reportSoon);
}
function followNew(w) { follow(w); reportSoon(); }

workspace.clientList().forEach(follow);
workspace.clientAdded.connect(followNew);
workspace.clientRemoved.connect(reportSoon);
workspace.clientActivated.connect(reportSoon);
workspace.currentDesktopChanged.connect(reportSoon);
report();
)js";

constexpr std::string_view prefix = "vellora-kwin-";
constexpr std::string_view suffix = ".js";

// More files than this in the folder are not ours to look through.
constexpr int mostEntries = 1000;

std::optional<std::filesystem::path> runtimeFolder() {
  return environmentFolder("XDG_RUNTIME_DIR");
}

// The process in "vellora-kwin-PROCESS-XXXXXX.js"; 0 in other names.
std::int32_t writerOf(std::string_view name) {
  if (!name.starts_with(prefix) || !name.ends_with(suffix)) return 0;
  name.remove_prefix(prefix.size());
  name = name.substr(0, name.find('-'));
  std::int32_t process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  return error == std::errc() && end == name.data() + name.size() ? process : 0;
}

std::string constant(std::string_view name, std::string_view value) {
  return "var " + std::string(name) + " = \"" + std::string(value) + "\";\n";
}

}  // namespace

std::string kwinScript(const std::string& busName) {
  return constant("busName", busName) + constant("objectPath", KWinReportInterface::objectPath) +
         constant("interfaceName", KWinReportInterface::interfaceName) +
         constant("reportMethod", KWinReportInterface::reportMethod) + std::string(body);
}

std::unique_ptr<KWinScriptFile> KWinScriptFile::write(const std::string& script) {
  const auto folder = runtimeFolder();
  if (!folder) return nullptr;
  std::string path =
      *folder / (std::string(prefix) + std::to_string(getpid()) + "-XXXXXX" + std::string(suffix));
  const int fd = mkostemps(path.data(), static_cast<int>(suffix.size()), O_CLOEXEC);
  if (fd < 0) return nullptr;
  std::unique_ptr<KWinScriptFile> file(new KWinScriptFile(std::move(path)));
  const bool isWritten =
      ::write(fd, script.data(), script.size()) == static_cast<ssize_t>(script.size());
  close(fd);
  return isWritten ? std::move(file) : nullptr;
}

KWinScriptFile::~KWinScriptFile() { removeFile(path_); }

std::vector<std::string> removeAbandonedKWinScripts() {
  std::vector<std::string> names;
  const auto folder = runtimeFolder();
  if (!folder) return names;
  std::error_code error;
  int left = mostEntries;
  for (auto entry = std::filesystem::directory_iterator(*folder, error);
       !error && entry != std::filesystem::directory_iterator() && --left >= 0;
       entry.increment(error)) {
    const std::filesystem::path& path = entry->path();
    const std::int32_t writer = writerOf(path.filename().native());
    if (writer > 0 && isProcessGone(writer) && removeFile(path)) names.push_back(path.stem());
  }
  return names;
}

}  // namespace vellora
