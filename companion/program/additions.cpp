#include "companion/program/additions.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "companion/exchange/folder.h"
#include "companion/readings/song_readings.h"
#include "companion/translator/song_translations.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

// As the XDG Base Directory Specification has it, and macOS; empty without a home.
fs::path translationsFolder() {
  const fs::path own = fs::path("vellora") / "translations";
  const auto cache = processEnvironment("XDG_CACHE_HOME");
  if (cache && fs::path(*cache).is_absolute()) return fs::path(*cache) / own;
  const auto home = processEnvironment("HOME");
  if (!home) return {};
  std::error_code error;
  const fs::path caches = fs::path(*home) / "Library" / "Caches";
  return (fs::is_directory(caches, error) ? caches : fs::path(*home) / ".cache") / own;
}

}  // namespace

void addToLines(Keeper& keeper, const Settings& settings) {
  CaptionSettings captions = keeper.settings();
  captions.reading = settings.readingWith == "alone" ? ReadingPlace::alone : ReadingPlace::above;
  keeper.setSettings(captions);
  const ReadingKind kind = readingKindOf(settings.reading).value_or(ReadingKind::none);
  if (kind != ReadingKind::none) keeper.add(std::make_unique<SongReadings>(kind));
  const std::string home = processEnvironment("HOME").value_or(std::string());
  Translator translator{commandWords(settings.translator, home),
                        {settings.translator, {}, settings.language},
                        settings.translatorTime};
  if (translator.words.empty()) return;
  keeper.add(std::make_unique<SongTranslations>(std::move(translator),
                                                TranslationCache(translationsFolder())));
}

}  // namespace vellora::companion
