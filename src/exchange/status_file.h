#pragma once

#include <filesystem>
#include <string_view>

namespace vellora {

// The status line's file, "status.json" in the exchange folder. Main thread.

// Whether there is nothing to record: the message is the one last recorded, the overlay is not
// stopping, and the file is still there.
bool isStatusCurrent(const std::filesystem::path& statusFile, std::string_view message,
                     bool stopped, std::string_view lastMessage);

// Replaces the file in one step. False where that fails; the next line, even the same, tries again
// as long as there is no file.
bool writeStatusFile(const std::filesystem::path& statusFile, std::string_view message,
                     bool stopped);

}  // namespace vellora
