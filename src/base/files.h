#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace vellora {

// Largest file that `readWholeFile` returns, in bytes.
inline constexpr std::size_t largestReadableFile = std::size_t{16} * 1024 * 1024;

// The whole content of a regular file, or nothing when it cannot be read: missing, not permitted, a
// folder, a FIFO, a device, or larger than `largestReadableFile`. Follows symbolic links. Never
// waits for a writer. Any thread.
std::optional<std::string> readWholeFile(const std::filesystem::path& path);

enum class FileReading { failed, asBefore, other };

// readWholeFile for one who has the content of an earlier reading: `other` gets the content only
// where it is another than `known`, and is empty else. Nothing is allocated for a file whose bytes
// are as they were. Any thread.
FileReading readWholeFileAgain(const std::filesystem::path& path, std::string_view known,
                               std::string& other);

// What a file that is replaced must outlive: the program alone, or a power cut too, for which the
// writer waits for the disk.
enum class Outlives { program, powerCut };

// Replaces `path` in one step: writes a temporary file in the same folder and renames it over the
// destination (a symbolic link is replaced, not followed). The folder is never created. On failure
// the result is false, the old file is untouched and no temporary file stays behind. The new file
// has the permissions of an ordinary new file. Any thread.
bool writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         Outlives outlives = Outlives::powerCut);

// Removes what writers that ended in the middle of `writeFileAtomically` left in the folder: the
// temporary files of processes that are not there any more, once they are a minute old. Looks at no
// more than the first thousand entries. Failures are ignored. Any thread.
void removeAbandonedFiles(const std::filesystem::path& folder);

// Makes the folder where it is missing, from its first moment for the user alone, and the folders
// above it as ordinary ones. One that is there stays as it is. The error, where there is none
// afterwards. Any thread.
std::error_code makePrivateFolder(const std::filesystem::path& path);

// Whether anything exists at `path`, symbolic links followed.
bool fileExists(const std::filesystem::path& path);

// Removes the file, failures ignored. The result says whether it is gone by this call.
bool removeFile(const std::filesystem::path& path);

}  // namespace vellora
