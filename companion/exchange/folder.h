#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/exchange_folder.h"
#include "exchange/record_reader.h"
#include "exchange/records/records.h"

namespace vellora::companion {

inline constexpr std::string_view snapshotFileName = "snapshot.json";
inline constexpr std::string_view exchangeFolderName = "Vellora";

// Looks up an environment variable, as `environmentVariable` does; nothing where it is unset or
// empty.
using Environment = std::function<std::optional<std::string>(const char* name)>;

// Where the exchange folder is unless the user says otherwise: "Vellora" in $XDG_RUNTIME_DIR, which
// lives in memory; else in ~/Library/Application Support where that exists; else in
// $XDG_STATE_HOME or ~/.local/state (XDG Base Directory Specification). Nothing without a home.
std::optional<std::filesystem::path> defaultExchangeFolder(const Environment& environment);

// The companion's side of an exchange folder. Main thread.
class ExchangeFolder {
 public:
  explicit ExchangeFolder(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path snapshotPath() const { return path_ / snapshotFileName; }

  // Makes the folder where it is missing, for the user alone. What went wrong, or nothing.
  std::optional<std::string> make() const;

  // Asked for far more often than written: decoded only when it is new. Texts that are longer than
  // any title are cut.
  std::optional<NowPlayingTrack> nowPlaying();
  std::optional<OverlayStatus> status();

  // Each replaces its file in one step; false where it cannot be written.
  bool write(const SyncRequest& request) const;
  bool write(const OverlaySnapshot& snapshot) const;
  bool write(const MusicCommand& command) const;

  // Whether a command waits to be taken.
  bool commandWaits() const;
  void withdrawCommand() const;
  // Removes the overlay's word. An overlay that runs writes it again within moments.
  void withdrawStatus() const;
  // Ends the request to be told what plays.
  void withdrawRequest() const;

  // The URL by which a running overlay is pointed at this folder.
  std::string url() const;

 private:
  // A file's record, cut.
  template <typename Record>
  struct Kept {
    RecordReader<Record> reader;
    std::shared_ptr<const Record> whole;
    std::optional<Record> cut;
  };
  template <typename Record>
  std::optional<Record> read(Kept<Record>& kept, std::string_view file) const;

  std::filesystem::path path_;
  Kept<NowPlayingTrack> track_;
  Kept<OverlayStatus> status_;
};

}  // namespace vellora::companion
