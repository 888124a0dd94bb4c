#include "companion/program/additions.h"

#include <memory>

#include "companion/readings/song_readings.h"

namespace vellora::companion {

void addToLines(Keeper& keeper, const Settings& settings) {
  CaptionSettings captions = keeper.settings();
  captions.reading = settings.readingWith == "alone" ? ReadingPlace::alone : ReadingPlace::above;
  keeper.setSettings(captions);
  const ReadingKind kind = readingKindOf(settings.reading).value_or(ReadingKind::none);
  if (kind != ReadingKind::none) keeper.add(std::make_unique<SongReadings>(kind));
}

}  // namespace vellora::companion
