#include "companion/program/additions.h"

#include <memory>
#include <utility>

#include "base/environment.h"
#include "companion/exchange/folder.h"
#include "companion/readings/song_readings.h"
#include "companion/settings/user_folders.h"
#include "companion/translator/song_translations.h"

namespace vellora::companion {
void addToLines(Keeper& keeper, const Settings& settings) {
  CaptionSettings captions = keeper.settings();
  captions.reading = settings.readingWith == "alone" ? ReadingPlace::alone : ReadingPlace::above;
  keeper.setSettings(captions);
  const ReadingKind kind = readingKindOf(settings.reading).value_or(ReadingKind::none);
  if (kind != ReadingKind::none) keeper.add(std::make_unique<SongReadings>(kind));
  const std::string home = environmentVariable("HOME").value_or(std::string());
  Translator translator{commandWords(settings.translator, home),
                        {settings.translator, {}, settings.language},
                        settings.translatorTime};
  if (translator.words.empty()) return;
  const auto caches = cacheFolder(environmentVariable);
  keeper.add(std::make_unique<SongTranslations>(
      std::move(translator), TranslationCache(caches ? *caches / "vellora" / "translations" : "")));
}

}  // namespace vellora::companion
