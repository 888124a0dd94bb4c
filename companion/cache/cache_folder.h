#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vellora::companion {

struct CacheLimits {
  std::size_t files = 5000;
  std::uintmax_t bytes = std::uintmax_t{32} * 1024 * 1024;
};

// Texts that can be had again, a file for each, in a folder for the user alone. What cannot be
// written is not kept. Where there is too much, those go that nothing has asked for in the longest
// time. Files that are not named as these are stay. One thread.
class CacheFolder {
 public:
  // `folder`: made when something is first kept; where it is empty, nothing is. `ending`: of the
  // files' names, with the dot.
  CacheFolder(std::filesystem::path folder, std::string ending, CacheLimits limits);

  // The text that was kept last under a name that is a hash of `identity`, or what has become of
  // it: the text itself has to tell what it is of. Nothing where there is none.
  std::optional<std::string> find(std::string_view identity) const;

  void keep(std::string_view identity, std::string_view text) const;

 private:
  std::filesystem::path fileOf(std::string_view identity) const;
  bool isOurs(const std::filesystem::path& path) const;
  void makeRoom() const;

  std::filesystem::path folder_;
  std::string ending_;
  CacheLimits limits_;
};

}  // namespace vellora::companion
