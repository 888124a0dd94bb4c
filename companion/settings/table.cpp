#include <system_error>

#include "companion/exchange/folder.h"
#include "companion/library/languages.h"
#include "companion/service/server_address.h"
#include "companion/settings/setting.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

template <auto member>
auto& placeOf(Settings& settings) {
  return settings.*member;
}
template <auto member>
auto& captionPlace(Settings& settings) {
  return settings.captions.*member;
}

std::string languageMistake(const std::string& text) {
  return isLanguageTag(text) ? std::string()
                             : "\"" + text + "\" is no language tag such as de or pt-BR";
}

std::string serverMistake(const std::string& text) {
  return parseServerAddress(text)
             ? std::string()
             : inQuotes(text) + " is no address such as " + std::string(defaultLyricsServer);
}

std::string exchangeMistake(const std::filesystem::path& path) {
  std::error_code error;
  const auto whole = std::filesystem::absolute(path, error).lexically_normal();
  if (error) return "the working folder is gone; name the folder from the root on";
  const auto named = whole.has_filename() ? whole : whole.parent_path();
  return named.filename() == exchangeFolderName
             ? std::string()
             : "the folder's own name must be \"Vellora\", for the overlay takes no other";
}

}  // namespace

std::span<const Setting> allSettings() {
  static const std::vector<Setting> table{
      {.key = "folder",
       .valueName = "FOLDER",
       .help = "the folder of lyrics and their translations",
       .value = PathValue{placeOf<&Settings::folder>},
       .otherwise = "the user's folder of music",
       .example = "~/Music",
       .scope = SettingScope::argument},
      {.key = "exchange",
       .valueName = "FOLDER",
       .help = "the exchange folder; its own name must be \"Vellora\"",
       .value = PathValue{placeOf<&Settings::exchange>, exchangeMistake},
       .example = "~/Vellora"},
      {.key = "language",
       .valueName = "TAG",
       .help = "the language of translations to prefer, as \"de\"",
       .value = TextValue{placeOf<&Settings::language>, languageMistake},
       .otherwise = "that of the system",
       .example = "de"},
      {.key = "font-size",
       .valueName = "POINTS",
       .help = "of the captions",
       .value = NumberValue{captionPlace<&CaptionSettings::fontSize>, CaptionSettings::smallestFont,
                            CaptionSettings::largestFont}},
      {.key = "offset",
       .valueName = "POINTS",
       .help = "moves the captions down",
       .value = NumberValue{captionPlace<&CaptionSettings::verticalOffset>,
                            -CaptionSettings::farthestOffset, CaptionSettings::farthestOffset}},
      {.key = "reading",
       .valueName = "KIND",
       .help = "lines in Latin letters beside their translations",
       .value = ChoiceValue{placeOf<&Settings::reading>,
                            {"none", "pinyin", "romaji", "romaja", "latin", "auto"}}},
      {.key = "reading-with",
       .valueName = "PLACE",
       .help = "the reading above the translation, or alone",
       .value = ChoiceValue{placeOf<&Settings::readingWith>, {"above", "alone"}}},
      {.key = "lyrics",
       .valueName = "SERVICE",
       .help = "who is asked for lyrics that the folder lacks",
       .value = ChoiceValue{placeOf<&Settings::lyrics>, {"none", "lrclib"}},
       .shorthand = SettingShorthand{"--online", "lrclib",
                                     "ask the service for lyrics, as --lyrics=lrclib"}},
      {.key = "lyrics-server",
       .valueName = "URL",
       .help = "the address of the service",
       .value = TextValue{placeOf<&Settings::lyricsServer>, serverMistake}},
      {.key = "translator",
       .valueName = "COMMAND",
       .help = "a program that translates the lines that the files leave open",
       .value = TextValue{placeOf<&Settings::translator>},
       .example = "~/bin/translate-by-apertium eng-spa"},
      {.key = "translator-time",
       .valueName = "SECONDS",
       .help = "how long it may take for a song",
       .value = NumberValue{placeOf<&Settings::translatorTime>, 1, 600}},
      {.key = "plain",
       .help = "lines of text even where the output is a terminal",
       .value = SwitchValue{placeOf<&Settings::plain>}},
      {.key = "overlay",
       .help = "start the overlay, or point the running one here",
       .value = SwitchValue{placeOf<&Settings::overlay>}},
      {.key = "overlay-program",
       .valueName = "PROGRAM",
       .help = "start the overlay, and this program as it",
       .value = TextValue{placeOf<&Settings::overlayProgram>},
       .example = "/usr/bin/vellora"},
      {.key = "patience",
       .valueName = "SECONDS",
       .help = "how long a command to the player waits for its effect",
       .value = NumberValue{placeOf<&Settings::patience>, 0, 600},
       .scope = SettingScope::playerCommands},
  };
  return table;
}

}  // namespace vellora::companion
