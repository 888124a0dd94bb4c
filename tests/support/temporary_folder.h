#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vellora-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  void write(std::string_view name, std::string_view text) const;
  // Empty for a file that is not there.
  std::string read(std::string_view name) const;
  // Whether there is anything of that name, a dangling link included.
  bool has(std::string_view name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(path_ / name));
  }

  // The names of all that is in the folder, sorted.
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      result.push_back(entry.path().filename().string());
    }
    std::ranges::sort(result);
    return result;
  }

 private:
  std::filesystem::path path_;
};

inline void writeText(const std::filesystem::path& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

inline std::string readText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void TemporaryFolder::write(std::string_view name, std::string_view text) const {
  writeText(path_ / name, text);
}

inline std::string TemporaryFolder::read(std::string_view name) const {
  return readText(path_ / name);
}

}  // namespace vellora
