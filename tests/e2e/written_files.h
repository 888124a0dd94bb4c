#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

namespace vellora::e2e {

// Keeps a copy of every file that is put into an exchange folder, whoever writes it, so that all of
// them can be held against the schemas when a test ends. Watches with inotify(7): a file counts as
// written when it is renamed into its place. One thread.
class WrittenFiles {
 public:
  // Copies go to `kept`/<number>/<name of the file>.
  explicit WrittenFiles(std::filesystem::path kept);
  WrittenFiles(const WrittenFiles&) = delete;
  WrittenFiles& operator=(const WrittenFiles&) = delete;
  ~WrittenFiles();

  // Watches one more folder.
  void watch(const std::filesystem::path& folder);
  // Waits for a write, so long at most, and copies what was written.
  void wait(int milliseconds);
  // How many writes of that file were seen.
  std::size_t count(const std::string& name) const;
  std::size_t count() const { return total_; }

 private:
  void keep(const std::filesystem::path& folder, const std::string& name);

  std::filesystem::path kept_;
  int descriptor_;
  std::map<int, std::filesystem::path> folders_;  // by watch descriptor
  std::map<std::string, std::size_t> counts_;
  std::size_t total_ = 0;
};

}  // namespace vellora::e2e
