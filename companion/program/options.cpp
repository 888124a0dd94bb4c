#include "companion/program/options.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <sstream>
#include <system_error>

#include <CLI/CLI.hpp>

#include "base/number_text.h"
#include "companion/library/languages.h"
#include "companion/song/time_stamp.h"

namespace vellora::companion {
namespace {

constexpr const char* about =
    "Feeds Vellora with the translations of the songs in a folder: finds the song that plays by "
    "its\n"
    "tags or its file name, and keeps the overlay's snapshot fresh while it plays.";

constexpr const char* footer =
    "Files: song.lrc with song.de.lrc beside it, or one with both; also TTML, SRT, text, PO and "
    "TSV.\n"
    "Exit status: 0 done; 1 check or import found something; 2 wrong arguments; 3 no overlay "
    "answers;\n"
    "4 the player did not do it; 5 a file or folder cannot be read or written.\n";

// A number within bounds; CLI11's own range takes what is not a number.
CLI::Validator between(double lowest, double highest) {
  const auto judge = [lowest, highest](const std::string& text) {
    const auto number = parseNumber(text);
    return number && *number >= lowest && *number <= highest
               ? std::string()
               : "\"" + text + "\" is not between " + plainNumber(lowest) + " and " +
                     plainNumber(highest);
  };
  return {judge, "NUMBER"};
}

constexpr const char* seeHelp = "\nRun with --help for more information.\n";

// "de_DE.UTF-8" as "de-DE"; "" for "C" and "POSIX".
std::string languageOf(const Environment& environment) {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const auto value = environment(name);
    if (!value) continue;
    std::string tag = value->substr(0, value->find_first_of(".@"));
    std::ranges::replace(tag, '_', '-');
    return isLanguageTag(tag) ? tag : std::string();
  }
  return {};
}

// The words of the command line before they are judged.
struct Words {
  std::string exchange;
  std::string lyrics;
  std::string checked;  // the folder that a command names
  std::string target;
  std::string at;
  std::string importTo;
};

CLI::App* addCommand(CLI::App& app, Options& options, const char* name, const char* description,
                     MusicCommand::Action action) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_option("--patience", options.patience, "to wait for the effect (default 8)")
      ->check(between(0.0, 600.0))
      ->option_text("SECONDS");
  command->callback([&options, action] {
    options.task = Task::command;
    options.command.action = action;
  });
  return command;
}

void addCommands(CLI::App& app, Options& options, Words& words) {
  using Action = MusicCommand::Action;
  CLI::App* const play =
      addCommand(app, options, "play", "play a song of the player's library", Action::play);
  play->add_option("TITLE", options.command.title, "the song's title")->required();
  play->add_option("ARTIST", options.command.artist, "the song's artist");
  play->add_option("--at", words.at, "where to begin, as 1:23")->option_text("TIME");
  CLI::App* const seek =
      addCommand(app, options, "seek", "go to a place in the song and play", Action::seek);
  seek->add_option("TIME", words.target, "1:23 or 83.5; with + or - from where it is")->required();
  addCommand(app, options, "next", "the next song", Action::next);
  addCommand(app, options, "previous", "the song's beginning, or the song before",
             Action::previous);
  addCommand(app, options, "playpause", "pause, or go on", Action::playPause);
}

void addTasks(CLI::App& app, Options& options, Words& words) {
  const auto is = [&options](Task task) { return [&options, task] { options.task = task; }; };
  app.add_subcommand("status", "say what plays and what the overlay says")
      ->callback(is(Task::status));
  CLI::App* const check =
      app.add_subcommand("check", "say which songs of a folder are complete, and what is wrong");
  check->add_option("FOLDER", words.checked, "the folder of lyrics")->required();
  check->callback(is(Task::check));
  CLI::App* const import =
      app.add_subcommand("import", "write a folder's songs as clean pairs of LRC files");
  import->add_option("FOLDER", words.checked, "the folder to read")->required();
  import->add_option("--to", words.importTo, "the folder to write to; made where missing")
      ->required()
      ->option_text("FOLDER");
  import->add_flag("--force", options.force, "replace files that are there");
  import->callback(is(Task::import));
}

std::string describe(CLI::App& app, Options& options, Words& words) {
  app.add_option("FOLDER", words.lyrics, "the folder of lyrics and their translations");
  app.add_option("--exchange", words.exchange,
                 "the exchange folder; its own name must be \"Vellora\"")
      ->option_text("FOLDER");
  app.add_option("--language", options.language,
                 "the language of translations to prefer, as \"de\" (default: that of the system)")
      ->option_text("TAG");
  app.add_option("--font-size", options.captions.fontSize, "of the captions, 8 to 96 (default 26)")
      ->check(between(CaptionSettings::smallestFont, CaptionSettings::largestFont))
      ->option_text("POINTS");
  app.add_option("--offset", options.captions.verticalOffset,
                 "moves the captions down; -400 to 400 (default 0)")
      ->check(between(-CaptionSettings::farthestOffset, CaptionSettings::farthestOffset))
      ->option_text("POINTS");
  app.add_flag("--plain", options.plain, "lines of text even where the output is a terminal");
  app.add_flag("--overlay", options.overlay, "start the overlay, or point the running one here");
  app.add_option("--overlay-program", options.overlayProgram,
                 "start the overlay, and this program as it")
      ->option_text("PROGRAM");
  app.fallthrough();
  app.require_subcommand(0, 1);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("TEXT", "");
  app.footer(footer);
  addCommands(app, options, words);
  addTasks(app, options, words);
  return {};
}

// What is wrong with the words, or nothing.
std::string judge(Options& options, const Words& words, const Environment& environment) {
  if (!options.overlayProgram.empty()) options.overlay = true;
  // CLI11 gives a command's surplus word to the program.
  if (options.task != Task::keep && !words.lyrics.empty()) {
    return "\"" + words.lyrics + "\" is one word too many";
  }
  options.lyrics = options.task == Task::keep ? words.lyrics : words.checked;
  options.importTo = words.importTo;
  if (options.task == Task::keep && words.lyrics.empty()) {
    return "name the folder of lyrics, or a command";
  }
  if (options.language.empty()) {
    options.language = languageOf(environment);
  } else if (!isLanguageTag(options.language)) {
    return "--language: \"" + options.language + "\" is no language tag such as de or pt-BR";
  }
  for (const std::string* time : {&words.target, &words.at}) {
    if (time->empty()) continue;
    const auto target = parseSeekTarget(*time);
    if (!target || (time == &words.at && target->relative)) {
      return "\"" + *time + "\" is no time such as 1:23";
    }
    options.target = *target;
  }
  if (options.task == Task::check || options.task == Task::import) return {};
  if (words.exchange.empty()) {
    const auto folder = defaultExchangeFolder(environment);
    if (!folder) return "no home folder is known; name the exchange folder with --exchange";
    options.exchange = *folder;
    return {};
  }
  std::error_code error;
  options.exchange = std::filesystem::absolute(words.exchange, error).lexically_normal();
  if (error) return "--exchange: the working folder is gone; name the folder from the root on";
  if (!options.exchange.has_filename()) options.exchange = options.exchange.parent_path();
  if (options.exchange.filename() != exchangeFolderName) {
    return "--exchange: the folder's own name must be \"Vellora\", for the overlay takes no other";
  }
  return {};
}

}  // namespace

int fail(ExitStatus status, const std::string& message) {
  std::cerr << "vellora-companion: " << message << "\n";
  return status;
}

std::optional<SeekTarget> parseSeekTarget(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const bool relative = text.front() == '+' || text.front() == '-';
  const auto seconds = parseTime(std::string_view(text).substr(relative ? 1 : 0));
  if (!seconds) return std::nullopt;
  return SeekTarget{text.front() == '-' ? -*seconds : *seconds, relative};
}

std::variant<Options, Answer> parseOptions(const std::vector<std::string>& arguments,
                                           const Environment& environment) {
  Options options;
  Words words;
  CLI::App app(about, "vellora-companion");
  describe(app, options, words);
  try {
    // CLI11 takes the words from the last to the first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ExtrasError& error) {
    // A mistyped command is taken as the folder, and its own argument is then one too many.
    const std::string taken =
        words.lyrics.empty() ? "" : "; \"" + words.lyrics + "\" was taken as the folder of lyrics";
    return Answer{"vellora-companion: " + std::string(error.what()) + taken + seeHelp,
                  wrongArguments};
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = app.exit(error, out, err);
    if (status == 0) return Answer{out.str(), allWell};
    return Answer{"vellora-companion: " + err.str(), wrongArguments};
  }
  const std::string mistake = judge(options, words, environment);
  if (!mistake.empty()) {
    return Answer{"vellora-companion: " + mistake + seeHelp, wrongArguments};
  }
  return options;
}

}  // namespace vellora::companion
