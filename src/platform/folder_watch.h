#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

namespace vellora {

// Tells when one of some files in a folder was put in its place or removed, as the writer of an
// exchange file does it; a file that is written in place is not told of. Main thread.
class FolderWatch {
 public:
  virtual ~FolderWatch() = default;

  // Can be read from (as `poll` and `select` have it) once there is something to take; the same as
  // long as this lives.
  virtual int descriptor() const = 0;
  // Takes what was told so far, and whether it was of one of the files. Never waits. To be called
  // before the files are read: what happens to them from then on is told of again.
  virtual bool take() = 0;
  // Whether the folder is still watched: not once it was removed or another took its place.
  virtual bool watches() const = 0;
};

// `names`: the files' names in `folder`. Null where the folder is missing or the system cannot
// watch it.
std::unique_ptr<FolderWatch> makeFolderWatch(const std::filesystem::path& folder,
                                             std::vector<std::string_view> names);

}  // namespace vellora
