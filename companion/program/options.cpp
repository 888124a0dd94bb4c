#include "companion/program/options.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <sstream>
#include <system_error>

#include <CLI/CLI.hpp>

#include "base/files.h"
#include "companion/library/languages.h"
#include "companion/settings/config_file.h"
#include "companion/settings/user_folders.h"
#include "companion/song/time_stamp.h"

namespace vellora::companion {
namespace {

constexpr const char* about =
    "Feeds Vellora with the translations of the songs in a folder: finds the song that plays by "
    "its\n"
    "tags or its file name, and keeps the overlay's snapshot fresh while it plays.";

constexpr const char* asJson = "as a JSON object, for programs";

constexpr const char* footer =
    "Files: song.lrc with song.de.lrc beside it, or one with both; also TTML, SRT, text, PO and "
    "TSV.\n"
    "Exit status: 0 done; 1 check or import found something; 2 wrong arguments; 3 no overlay "
    "answers;\n"
    "4 the player did not do it; 5 a file or folder cannot be read or written; 6 another "
    "companion\n"
    "feeds the exchange folder.\n";

Answer wrong(const std::string& mistake) {
  return {"vellora-companion: " + mistake + "\nRun with --help for more information.\n",
          wrongArguments};
}

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
  std::vector<std::string>
      settings;         // one for each of `allSettings()`; empty where it is not given
  std::string checked;  // the folder that a command names
  std::string target;
  std::string at;
  std::string importTo;
};

// Offers the settings of one scope.
void addSettings(CLI::App& app, SettingScope scope, Words& words) {
  const auto all = allSettings();
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Setting& setting = all[i];
    if (setting.scope != scope) continue;
    std::string& word = words.settings[i];
    if (setting.valueName.empty()) {
      app.add_flag(setting.option(), word, setting.fullHelp());
    } else {
      CLI::Option* const option = app.add_option(setting.option(), word, setting.fullHelp());
      if (scope != SettingScope::argument) option->option_text(setting.valueName);
    }
    if (const auto& shorthand = setting.shorthand) {
      app.add_flag_callback(
          shorthand->option, [&word, &shorthand] { word = shorthand->value; }, shorthand->help);
    }
  }
}

CLI::App* addCommand(CLI::App& app, Options& options, Words& words, const char* name,
                     const char* description, MusicCommand::Action action) {
  CLI::App* const command = app.add_subcommand(name, description);
  addSettings(*command, SettingScope::playerCommands, words);
  command->callback([&options, action] {
    options.task = Task::command;
    options.command.action = action;
  });
  return command;
}

void addCommands(CLI::App& app, Options& options, Words& words) {
  using Action = MusicCommand::Action;
  CLI::App* const play =
      addCommand(app, options, words, "play", "play a song of the player's library", Action::play);
  play->add_option("TITLE", options.command.title, "the song's title")->required();
  play->add_option("ARTIST", options.command.artist, "the song's artist");
  play->add_option("--at", words.at, "where to begin, as 1:23")->option_text("TIME");
  CLI::App* const seek =
      addCommand(app, options, words, "seek", "go to a place in the song and play", Action::seek);
  seek->add_option("TIME", words.target, "1:23 or 83.5; with + or - from where it is")->required();
  addCommand(app, options, words, "next", "the next song", Action::next);
  addCommand(app, options, words, "previous", "the song's beginning, or the song before",
             Action::previous);
  addCommand(app, options, words, "playpause", "pause, or go on", Action::playPause);
}

void addTasks(CLI::App& app, Options& options, Words& words) {
  const auto is = [&options](Task task) { return [&options, task] { options.task = task; }; };
  CLI::App* const status = app.add_subcommand("status", "say what plays and what the overlay says");
  status->add_flag("--json", options.json, asJson);
  status->callback(is(Task::status));
  CLI::App* const check =
      app.add_subcommand("check", "say which songs of a folder are complete, and what is wrong");
  check->add_option("FOLDER", words.checked, "the folder of lyrics");
  check->add_flag("--json", options.json, asJson);
  check->callback(is(Task::check));
  CLI::App* const import =
      app.add_subcommand("import", "write a folder's songs as clean pairs of LRC files");
  import->add_option("FOLDER", words.checked, "the folder to read");
  import->add_option("--to", words.importTo, "the folder to write to; made where missing")
      ->required()
      ->option_text("FOLDER");
  import->add_flag("--force", options.force, "replace files that are there");
  import->callback(is(Task::import));
  CLI::App* const config =
      app.add_subcommand("config", "say which settings hold, and from where each comes");
  config->add_flag("--write", options.writeConfig,
                   "make the settings' file, with all of them explained, where there is none");
  config->callback(is(Task::config));
}

std::string describe(CLI::App& app, Options& options, Words& words) {
  words.settings.resize(allSettings().size());
  addSettings(app, SettingScope::argument, words);
  addSettings(app, SettingScope::everywhere, words);
  app.set_version_flag("--version", "vellora-companion " VELLORA_VERSION,
                       "Print the version and exit");
  app.fallthrough();
  app.require_subcommand(0, 1);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("TEXT", "");
  app.footer(footer);
  addCommands(app, options, words);
  addTasks(app, options, words);
  return {};
}

// The settings' file, then the command line, into the options. What is wrong, where anything is.
std::optional<Answer> settle(Options& options, const Words& words, const Environment& environment) {
  const auto all = allSettings();
  options.origins.resize(all.size());
  if (const auto path = configFilePath(environment)) {
    options.configFile = *path;
    const auto text = readWholeFile(*path);
    if (!text && fileExists(*path)) {
      return Answer{"vellora-companion: " + path->string() + " cannot be read\n", filesFailed};
    }
    Problems problems(path->string());
    const auto lines = takeConfig(readConfigText(text.value_or(""), problems), environment("HOME"),
                                  options, problems);
    std::string mistakes;
    for (const Problem& problem : std::move(problems).take()) mistakes += problem.text() + "\n";
    if (!mistakes.empty()) return Answer{mistakes, wrongArguments};
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (lines[i] > 0) options.origins[i] = {SettingOrigin::Kind::file, lines[i]};
    }
  }
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (words.settings[i].empty()) continue;
    const std::string mistake = takeSetting(all[i], words.settings[i], options);
    if (!mistake.empty()) return wrong(all[i].option() + ": " + mistake);
    options.origins[i].kind = SettingOrigin::Kind::commandLine;
  }
  return std::nullopt;
}

SettingOrigin::Kind originOf(const Options& options, std::string_view key) {
  const auto all = allSettings();
  const auto setting = std::ranges::find(all, key, &Setting::key);
  return options.origins[static_cast<std::size_t>(setting - all.begin())].kind;
}

// What is wrong with the words, or nothing.
std::string judge(Options& options, const Words& words, const Environment& environment) {
  // Whoever names the overlay's program wants it, unless the switch is said as plainly.
  if (originOf(options, "overlay-program") > originOf(options, "overlay")) options.overlay = true;
  if (options.task != Task::keep &&
      originOf(options, "folder") == SettingOrigin::Kind::commandLine) {
    // CLI11 gives a command's surplus word to the program.
    return "\"" + options.folder.string() + "\" is one word too many";
  }
  if (!words.checked.empty()) options.folder = words.checked;
  options.importTo = words.importTo;
  if (options.language.empty()) options.language = languageOf(environment);
  for (const std::string* time : {&words.target, &words.at}) {
    if (time->empty()) continue;
    const auto target = parseSeekTarget(*time);
    if (!target || (time == &words.at && target->relative)) {
      return "\"" + *time + "\" is no time such as 1:23";
    }
    options.target = *target;
  }
  if (options.exchange.empty()) {
    options.exchange = defaultExchangeFolder(environment).value_or("");
  } else {
    options.exchange = std::filesystem::absolute(options.exchange).lexically_normal();
    if (!options.exchange.has_filename()) options.exchange = options.exchange.parent_path();
  }
  if (options.folder.empty()) options.folder = musicFolder(environment).value_or("");
  const bool onFolder = options.task == Task::check || options.task == Task::import;
  if (options.folder.empty() && (onFolder || options.task == Task::keep)) {
    return onFolder ? "name the folder of lyrics" : "name the folder of lyrics, or a command";
  }
  if (options.exchange.empty() && !onFolder && options.task != Task::config) {
    return "no home folder is known; name the exchange folder with --exchange";
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
    const std::string& folder = words.settings.front();
    const std::string taken =
        folder.empty() ? "" : "; \"" + folder + "\" was taken as the folder of lyrics";
    return wrong(std::string(error.what()) + taken);
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = app.exit(error, out, err);
    if (status == 0) return Answer{out.str(), allWell};
    return Answer{"vellora-companion: " + err.str(), wrongArguments};
  }
  if (auto answer = settle(options, words, environment)) return *std::move(answer);
  const std::string mistake = judge(options, words, environment);
  if (!mistake.empty()) return wrong(mistake);
  return options;
}

}  // namespace vellora::companion
