#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vellora {

// Where KWin's script reports to: a connection's own name on the session bus, and what it is called
// there. The method takes the report as one text.
namespace KWinReportInterface {
inline constexpr const char* objectPath = "/org/vellora/KWinReports";
inline constexpr const char* interfaceName = "org.vellora.KWinReports";
inline constexpr const char* reportMethod = "Report";
}  // namespace KWinReportInterface

// The script: reports all windows to `busName` once, and within 20 ms of a change to any of them or
// to the one that is active. JavaScript, for the interface of KWin 5's Scripting.
std::string kwinScript(const std::string& busName);

// A script's file, which KWin reads when it is told to: for the user alone, in the folder of the
// user's running programs (XDG_RUNTIME_DIR), gone with this object. A process that was killed
// leaves its file behind, which so tells the name of a script that may still run.
class KWinScriptFile {
 public:
  // Null where it could not be written.
  static std::unique_ptr<KWinScriptFile> write(const std::string& script);
  ~KWinScriptFile();
  KWinScriptFile(const KWinScriptFile&) = delete;
  KWinScriptFile& operator=(const KWinScriptFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // Under which KWin is to know the script: no other has it.
  std::string name() const { return path_.stem(); }

 private:
  explicit KWinScriptFile(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path path_;
};

// Removes the files of processes that are not there any more, and says which scripts those were.
std::vector<std::string> removeAbandonedKWinScripts();

}  // namespace vellora
