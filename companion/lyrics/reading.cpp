#include "companion/lyrics/reading.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "base/files.h"
#include "companion/lyrics/audio.h"
#include "companion/lyrics/encoding.h"
#include "companion/lyrics/plain.h"
#include "companion/lyrics/srt.h"
#include "companion/lyrics/table.h"
#include "companion/lyrics/ttml.h"
#include "companion/song/lrc.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

LyricFile unreadable(const std::filesystem::path& path, std::string message, std::string advice) {
  LyricFile file;
  file.name = path.string();
  file.lost = mostLines;
  file.problems.push_back({Severity::error, file.name, 0, std::move(message), std::move(advice)});
  return file;
}

LyricFile readAs(const std::string& ending, const std::string& name, std::string_view text,
                 std::string_view wantedLanguage) {
  if (ending == ".ttml") return readTtml(name, text, wantedLanguage);
  if (ending == ".srt") return readSrt(name, text);
  if (ending == ".txt") return readPlain(name, text);
  if (ending == ".po") return readPo(name, text);
  if (ending == ".tsv") return readTsv(name, text);
  return readLrc(name, text);
}

}  // namespace

std::string readableEnding(const std::filesystem::path& path) {
  std::string ending = lowerCase(path.extension().string());
  const bool known = std::ranges::find(readableEndings, ending) != readableEndings.end();
  return known ? ending : std::string();
}

bool isTable(const std::filesystem::path& path) {
  const std::string ending = readableEnding(path);
  return ending == ".po" || ending == ".tsv";
}

LyricFile readLyrics(const std::filesystem::path& name, std::string_view bytes,
                     std::string_view wantedLanguage) {
  if (isAudio(name)) {
    std::istringstream stream{std::string(bytes)};
    return readAudio(name, stream, wantedLanguage);
  }
  const auto decoded = decodeText(bytes);
  if (!decoded) {
    return unreadable(name, "not a text in any encoding that is known", "save it as UTF-8");
  }
  LyricFile file = readAs(readableEnding(name), name.string(), decoded->text, wantedLanguage);
  if (decoded->doubtful()) {
    file.problems.push_back(
        {Severity::warning, file.name, 0,
         "the encoding is taken to be " + decoded->encoding + ", which is no more than a guess",
         "save it as UTF-8 if letters look wrong"});
  }
  return file;
}

LyricFile readLyricFile(const std::filesystem::path& path, std::string_view wantedLanguage) {
  std::error_code error;
  if (isAudio(path) && std::filesystem::is_regular_file(path, error)) {
    std::ifstream bytes(path, std::ios::binary);
    if (bytes) return readAudio(path, bytes, wantedLanguage);
  }
  const auto size = std::filesystem::file_size(path, error);
  if (!error && size > largestReadableFile) {
    return unreadable(path, "larger than 16 MiB", "no song's lyrics are; it is left out");
  }
  const auto bytes = readWholeFile(path);
  if (!bytes) {
    return unreadable(path, "cannot be read", "is it an ordinary file, and may you read it?");
  }
  return readLyrics(path, *bytes, wantedLanguage);
}

}  // namespace vellora::companion
