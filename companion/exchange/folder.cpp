#include "companion/exchange/folder.h"

#include <system_error>
#include <utility>

#include "base/files.h"
#include "base/percent_encoding.h"
#include "companion/song/text.h"
#include "exchange/opened_url.h"

namespace vellora::companion {

namespace fs = std::filesystem;

namespace {

void shorten(std::string& text) { text.resize(cut(text, 4 * longestText).size()); }

void shortenTexts(NowPlayingTrack& track) {
  for (std::string* text : {&track.title, &track.artist, &track.album}) shorten(*text);
}
void shortenTexts(OverlayStatus& status) { shorten(status.message); }

}  // namespace

std::optional<fs::path> defaultExchangeFolder(const Environment& environment) {
  if (const auto runtime = environment("XDG_RUNTIME_DIR")) {
    return fs::path(*runtime) / exchangeFolderName;
  }
  const auto home = environment("HOME");
  std::error_code error;
  if (home) {
    const fs::path support = fs::path(*home) / "Library" / "Application Support";
    if (fs::is_directory(support, error)) return support / exchangeFolderName;
  }
  if (const auto state = environment("XDG_STATE_HOME"))
    return fs::path(*state) / exchangeFolderName;
  if (!home) return std::nullopt;
  return fs::path(*home) / ".local" / "state" / exchangeFolderName;
}

std::optional<std::string> ExchangeFolder::make() const {
  const std::error_code error = makePrivateFolder(path_);
  if (!error) return std::nullopt;
  return path_.string() + " cannot be made: " + error.message();
}

template <typename Record>
std::optional<Record> ExchangeFolder::read(Kept<Record>& kept, std::string_view file) const {
  const auto whole = kept.reader.read(path_ / file);
  if (whole == kept.whole) return kept.cut;
  kept.whole = whole;
  kept.cut = whole ? std::optional(*whole) : std::nullopt;
  if (kept.cut) shortenTexts(*kept.cut);
  return kept.cut;
}

std::optional<NowPlayingTrack> ExchangeFolder::nowPlaying() {
  return read(track_, nowPlayingFileName);
}

std::optional<OverlayStatus> ExchangeFolder::status() { return read(status_, statusFileName); }

bool ExchangeFolder::write(const SyncRequest& request) const {
  return writeExchangeFile(path_ / syncRequestFileName, request);
}

bool ExchangeFolder::write(const OverlaySnapshot& snapshot) const {
  return writeExchangeFile(snapshotPath(), snapshot);
}

bool ExchangeFolder::write(const MusicCommand& command) const {
  return writeExchangeFile(path_ / commandFileName, command);
}

bool ExchangeFolder::commandWaits() const { return fileExists(path_ / commandFileName); }

void ExchangeFolder::withdrawCommand() const { removeFile(path_ / commandFileName); }

void ExchangeFolder::withdrawStatus() const { removeFile(path_ / statusFileName); }

void ExchangeFolder::withdrawRequest() const { removeFile(path_ / syncRequestFileName); }

std::string ExchangeFolder::url() const {
  // "&" and "+" stand for themselves in a query, but not within one of its values.
  std::string value;
  for (const char c : snapshotPath().string()) {
    if (c == '&') {
      value.append("%26");
    } else if (c == '+') {
      value.append("%2B");
    } else {
      value.append(percentEncodedForQuery(std::string_view(&c, 1)));
    }
  }
  return std::string(openedURLScheme) + "://snapshot?snapshot=" + value;
}

}  // namespace vellora::companion
