#include "companion/library/folders.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include "companion/lyrics/audio.h"
#include "companion/lyrics/reading.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr double settling = 3;  // seconds; file systems round times to two at most

// "songs/" as "songs".
fs::path plain(const fs::path& folder) {
  fs::path root = folder.lexically_normal();
  return root.has_filename() || !root.has_relative_path() ? root : root.parent_path();
}

// When the folder was changed last, in seconds since 1970.
std::optional<std::int64_t> timeOf(const std::string& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0 || !S_ISDIR(found.st_mode)) return std::nullopt;
  return static_cast<std::int64_t>(found.st_mtime);
}

}  // namespace

Folders::Folders(const fs::path& root) : root_(plain(root).string()) {
  folders_[root_].folder.path = root_;
}

Folders::Look Folders::next(double now) {
  for (;;) {
    const auto at = at_.empty() ? folders_.begin() : folders_.upper_bound(at_);
    if (at == folders_.end()) {
      at_.clear();
      return {};
    }
    at_ = at->first;
    const auto time = timeOf(at_);
    if (time || at_ == root_) return look(at->second, time, now);
    remove(at_);
  }
}

Folders::Look Folders::look(Known& known, std::optional<std::int64_t> time, double now) {
  if (time && known.settled == time) return {&known.folder};
  const Folder before = known.folder;
  read(known);
  known.settled.reset();
  if (time && static_cast<double>(*time) + settling <= now) known.settled = time;
  return {&known.folder, true,
          before.files != known.folder.files || before.audio != known.folder.audio,
          !before.files.empty() || !before.audio.empty()};
}

std::vector<std::size_t> Folders::takeGone() { return std::exchange(gone_, {}); }

std::vector<Problem> Folders::problems() const {
  std::vector<Problem> result;
  for (const auto& [path, known] : folders_) {
    if (known.folder.problem && result.size() < Problems::most) {
      result.push_back(*known.folder.problem);
    }
  }
  if (tooMany_) {
    result.push_back({Severity::error, root_, 0,
                      "more than " + std::to_string(mostFiles) + " files of lyrics, " +
                          std::to_string(mostAudioFiles) + " audio files or " +
                          std::to_string(mostFolders) + " folders",
                      "the rest is left out; name the folder that holds your lyrics"});
  }
  return result;
}

void Folders::read(Known& known) {
  Folder& folder = known.folder;
  files_ -= folder.files.size();
  audio_ -= folder.audio.size();
  folder.files.clear();
  folder.audio.clear();
  folder.problem.reset();
  std::vector<std::string> inner;
  std::error_code error;
  fs::directory_iterator entry(folder.path, error);
  if (error) {
    folder.problem = Problem{Severity::error, folder.path.string(), 0,
                             "cannot be opened: " + error.message(), "is it a folder?"};
  }
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code failure;
    const std::string name = entry->path().filename().string();
    if (entry->is_directory(failure) && !entry->is_symlink(failure)) {
      inner.push_back(name);
    } else if (isAudio(name)) {
      addFile(folder.audio, name, audio_, mostAudioFiles);
    } else if (!readableEnding(name).empty()) {
      addFile(folder.files, name, files_, mostFiles);
    }
  }
  std::ranges::sort(folder.files);
  std::ranges::sort(folder.audio);
  std::ranges::sort(inner);
  std::vector<std::string> gone;
  std::ranges::set_difference(known.inner, inner, std::back_inserter(gone));
  for (const std::string& name : gone) remove((folder.path / name).string());
  known.inner = std::move(inner);
  if (static_cast<int>(folder.names.size()) == deepestFolder) return;
  for (const std::string& name : known.inner) add(known, name);
}

void Folders::addFile(std::vector<std::string>& to, const std::string& name, std::size_t& count,
                      std::size_t most) {
  if (count == most) {
    tooMany_ = true;
    return;
  }
  ++count;
  to.push_back(name);
}

void Folders::add(const Known& outer, const std::string& name) {
  const fs::path path = outer.folder.path / name;
  if (folders_.contains(path.string())) return;
  if (folders_.size() >= mostFolders) {
    tooMany_ = true;
    return;
  }
  Folder& folder = folders_[path.string()].folder;
  folder.number = ++number_;
  folder.path = path;
  folder.names = outer.folder.names;
  folder.names.insert(folder.names.begin(), name);
}

void Folders::remove(const std::string& path) {
  const auto at = folders_.find(path);
  if (at == folders_.end()) return;
  // The names are taken out first: what is removed shall not be gone through.
  for (const std::string& name : std::exchange(at->second.inner, {})) {
    remove((at->second.folder.path / name).string());
  }
  files_ -= at->second.folder.files.size();
  audio_ -= at->second.folder.audio.size();
  if (!at->second.folder.files.empty() || !at->second.folder.audio.empty())
    gone_.push_back(at->second.folder.number);
  folders_.erase(at);
}

}  // namespace vellora::companion
