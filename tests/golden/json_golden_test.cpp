#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/number_text.h"
#include "exchange/records/json.h"
#include "exchange/records/json_value.h"
#include "golden/golden_table.h"

namespace vellora::golden {
namespace {

std::string flag(bool value) { return value ? "true" : "false"; }

std::string verdict(const SyncRequest& record) { return plainNumber(record.updatedAt); }

std::string verdict(const OverlaySnapshot& record) {
  return "version=" + std::to_string(record.version) +
         " updatedAt=" + plainNumber(record.updatedAt) + " enabled=" + flag(record.enabled) +
         " title=" + toCodePoints(record.musicTitle) + " fontSize=" + plainNumber(record.fontSize) +
         " offset=" + plainNumber(record.verticalOffset) +
         " lines=" + std::to_string(record.lines.size());
}

std::string verdict(const NowPlayingTrack& record) {
  return "version=" + std::to_string(record.version) + " title=" + toCodePoints(record.title) +
         " position=" + plainNumber(record.position) + " playing=" + flag(record.playing);
}

std::string verdict(const MusicCommand& record) {
  return "action=" + std::string(MusicCommand::name(record.action)) +
         " title=" + toCodePoints(record.title) + " position=" + plainNumber(record.position);
}

std::string verdict(const OverlayStatus& record) {
  return "message=" + toCodePoints(record.message) + " stopped=" + flag(record.stopped);
}

template <typename Record>
std::string verdictOn(const std::string& file) {
  const std::optional<Record> record = decode<Record>(file);
  return record ? "ok " + verdict(*record) : "fails";
}

std::string verdictOn(const std::string& record, const std::string& file) {
  if (record == "SyncRequest") return verdictOn<SyncRequest>(file);
  if (record == "OverlaySnapshot") return verdictOn<OverlaySnapshot>(file);
  if (record == "NowPlayingTrack") return verdictOn<NowPlayingTrack>(file);
  if (record == "MusicCommand") return verdictOn<MusicCommand>(file);
  if (record == "OverlayStatus") return verdictOn<OverlayStatus>(file);
  return "no such record: " + record;
}

TEST(JsonGoldenTest, StringsAreWrittenAsTheTableHasThem) {
  everyRow("json-strings.tsv", 2, [](const Row& row) -> std::string {
    std::string json;
    appendJson(json, fromBase64(row[0]));
    return json == fromBase64(row[1]) ? "" : "written as " + json;
  });
}

TEST(JsonGoldenTest, FilesAreReadAsTheTableHasThem) {
  everyRow("json-decoding.tsv", 4, [](const Row& row) -> std::string {
    const std::string actual = verdictOn(row[0], fromBase64(row[1]));
    if (actual == row[3]) return "";
    // A stricter reader may refuse such a file, and a more exact one read it; a wrong value never.
    if (row[2] == "either" && (actual == "fails" || row[3] == "fails")) return "";
    return "verdict: " + actual;
  });
}

}  // namespace
}  // namespace vellora::golden
