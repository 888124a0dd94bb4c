#include "platform/linux/players/process_family.h"

#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"
#include "platform/linux/glib/glib_ptr.h"

namespace vellora {
namespace {

using Folder = std::filesystem::path;
using GKeyFilePtr = std::unique_ptr<GKeyFile, GRelease<g_key_file_unref>>;

// More generations than any program's processes have; the numbers may change meanwhile.
constexpr int mostGenerations = 64;

std::string read(const Folder& proc, std::int32_t process, const char* file) {
  return readWholeFile(proc / std::to_string(process) / file).value_or("");
}

// proc(5): the number, the name in parentheses, which may itself have any, the state, the parent.
std::optional<std::int32_t> parentOf(const Folder& proc, std::int32_t process) {
  const std::string text = read(proc, process, "stat");
  const std::size_t name = text.rfind(") ");
  constexpr std::size_t toParent = 4;  // from there: ") S 1"
  if (name == text.npos || name + toParent >= text.size()) return std::nullopt;
  std::int32_t parent = 0;
  const char* const first = text.data() + name + toParent;
  const auto parsed = std::from_chars(first, text.data() + text.size(), parent);
  if (parsed.ec != std::errc() || parent <= 1) return std::nullopt;
  return parent;
}

bool isAncestor(const Folder& proc, std::int32_t ancestor, std::int32_t process) {
  for (int i = 0; i < mostGenerations; ++i) {
    const auto parent = parentOf(proc, process);
    if (!parent) return false;
    if (*parent == ancestor) return true;
    process = *parent;
  }
  return false;
}

std::string keyOf(GKeyFile* file, const char* group, const char* key) {
  const GCharPtr value(g_key_file_get_string(file, group, key, nullptr));
  return value ? value.get() : "";
}

// flatpak-metadata(5) and the /.flatpak-info made of it; empty outside of Flatpak.
std::string flatpakOf(const Folder& proc, std::int32_t process) {
  const std::string text = read(proc, process, "root/.flatpak-info");
  const GKeyFilePtr info(g_key_file_new());
  if (text.empty() || g_key_file_load_from_data(info.get(), text.data(), text.size(),
                                                G_KEY_FILE_NONE, nullptr) == FALSE) {
    return "";
  }
  if (auto instance = keyOf(info.get(), "Instance", "instance-id"); !instance.empty()) {
    return "instance " + instance;
  }
  const auto application = keyOf(info.get(), "Application", "name");
  return application.empty() ? "" : "application " + application;
}

// The snap in "snap.NAME.PROGRAM…", which begins the text or one of the path's parts; else empty.
std::string snapIn(std::string_view text) {
  constexpr std::string_view mark = "snap.";
  for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark, at + 1)) {
    if (at > 0 && text[at - 1] != '/') continue;
    const std::string_view name = text.substr(at + mark.size());
    const std::size_t end = name.find_first_of("./ \n");
    if (end != name.npos && end > 0 && name[end] == '.') return std::string(name.substr(0, end));
  }
  return "";
}

std::string snapOf(const Folder& proc, std::int32_t process) {
  const auto confined = snapIn(read(proc, process, "attr/current"));
  return confined.empty() ? snapIn(read(proc, process, "cgroup")) : confined;
}

}  // namespace

bool belongTogether(std::int32_t a, std::int32_t b, const Folder& proc) {
  if (a <= 0 || b <= 0) return false;
  if (a == b || isAncestor(proc, a, b) || isAncestor(proc, b, a)) return true;
  const std::string container = containerOf(a, proc);
  return !container.empty() && container == containerOf(b, proc);
}

std::string containerOf(std::int32_t process, const Folder& proc) {
  if (process <= 0) return "";
  auto flatpak = flatpakOf(proc, process);
  if (!flatpak.empty()) return flatpak;
  const auto snap = snapOf(proc, process);
  return snap.empty() ? "" : "snap " + snap;
}

}  // namespace vellora
