#include "controller/model/real_controller.h"

#include <algorithm>
#include <utility>

#include "base/files.h"
#include "controller/model/plain_captions.h"
#include "controller/model/player_tree.h"
#include "exchange/records/json.h"
#include "support/temporary_folder.h"

namespace vellora::model {

namespace fs = std::filesystem;

namespace {

constexpr const char* folderNames[] = {"given", "one/Vellora", "two/Vellora"};
constexpr const char* snapshotNames[] = {"lines.json", "snapshot.json", "snapshot.json"};

// Texts that are no snapshot and no command.
constexpr const char* noSnapshots[] = {
    "",
    "{",
    "[]",
    "{\"version\":1}",
    R"({"version":1.5,"updatedAt":1700000000,"enabled":true,"musicTitle":"Night Drive",)"
    R"("musicArtist":"River Band","fontSize":32,"verticalOffset":0,"lines":[]})",
    R"({"version":1,"updatedAt":"now","enabled":true,"musicTitle":"Night Drive",)"
    R"("musicArtist":"River Band","fontSize":32,"verticalOffset":0,"lines":[]})"};
constexpr const char* noCommands[] = {
    "", "{}", "null",
    R"({"requestedAt":1700000000,"action":"Next","title":"","artist":"","position":0})",
    R"({"requestedAt":1700000000,"action":"next","title":"","artist":""})"};

template <std::size_t size>
const char* oneOf(const char* const (&texts)[size], int number) {
  return texts[static_cast<std::size_t>(number) % size];
}

bool same(const Rect& rect, const Box& box) {
  return rect.x == box.x && rect.y == box.y && rect.width == box.width && rect.height == box.height;
}

std::string shown(const std::string& what, const std::string& is, const std::string& shouldBe) {
  return what + " is \"" + is + "\", not \"" + shouldBe + "\"";
}
std::string shown(const std::string& what, double is, double shouldBe) {
  return shown(what, std::to_string(is), std::to_string(shouldBe));
}

}  // namespace

RealController::RealController(fs::path root) : root_(std::move(root)) {}
RealController::~RealController() = default;

fs::path RealController::file(std::size_t folder, const char* name) const {
  return root_ / folderNames[folder] / name;
}

void RealController::begin(const World& world) {
  controller_.reset();
  platform_ = std::make_unique<FakePlatform>();
  platform_->clock->set(world.now);
  for (const char* const name : folderNames) {
    fs::remove_all(root_ / (std::string(name) + ".away"));
    fs::remove_all(root_ / name);
    fs::create_directories(root_ / name);
  }
}

void RealController::start(std::optional<std::size_t> folder, bool hasStatusItem, bool hasButton) {
  std::shared_ptr<FakeRunningApplication> front;
  ScriptOutcome reply;
  std::optional<double> height = 1000.0;
  if (controller_) {  // an earlier program's
    front = platform_->workspace->frontmost;
    reply = platform_->scripting->standing;
    height = platform_->workspace->primaryHeight;
  }
  controller_.reset();
  platform_->statusItem = nullptr;
  platform_->app.timers.clear();
  platform_->frontmost = front;
  platform_->statusItemHasPlace = hasStatusItem;
  platform_->statusItemHasButton = hasButton;
  std::optional<fs::path> location;
  if (folder) location = file(*folder, snapshotNames[*folder]);
  controller_ = std::make_shared<OverlayDelegate>(location, *platform_, output_);
  platform_->workspace->primaryHeight = height;
  platform_->scripting->standing = reply;
  platform_->painter->charactersPerLine = charactersPerLine;
}

void RealController::follow(const World& world, const Step& step, std::size_t at) {
  platform_->log.clear();
  platform_->clock->set(world.now);
  platform_->accessibility->trusted = world.trusted;
  platform_->workspace->primaryHeight = world.screenHeight;
  platform_->scripting->onRun = [clock = platform_->clock, seconds = world.scriptSeconds](
                                    const ScriptRequest&) { clock->advance(seconds); };
  const Folder& folder = world.folders[at];
  const fs::path place = root_ / folderNames[at];
  const fs::path away = place.native() + ".away";
  switch (step.event) {
    case Event::writeSnapshot:
    case Event::breakSnapshot:
    case Event::removeSnapshot:
    case Event::allIsWell:
      if (folder.there) writeSnapshot(folder, at, step.a);
      break;
    case Event::writeSync:
    case Event::breakSync:
    case Event::removeSync:
      if (folder.there) writeSync(folder, at);
      break;
    case Event::writeCommand:
    case Event::breakCommand:
    case Event::removeCommand:
      if (folder.there) writeCommand(folder, at, step.a);
      break;
    case Event::removeStatus:
    case Event::blockStatus:
      if (!folder.there) break;
      fs::remove_all(file(at, "status.json"));
      if (folder.statusIsFolder) fs::create_directory(file(at, "status.json"));
      break;
    case Event::takeFolderAway:
      if (fs::exists(place)) fs::rename(place, away);
      break;
    case Event::bringFolderBack:
      if (fs::exists(away)) fs::rename(away, place);
      break;
    case Event::changeReply: {
      const PlayerReply& reply = world.reply;
      std::string text;
      for (std::size_t i = 0; i < reply.fields.size(); ++i) {
        text += (i > 0 ? "|" : "") + reply.fields[i];
      }
      platform_->scripting->standing = {
          reply.made, reply.hasText ? std::optional(text) : std::nullopt,
          reply.fails ? std::optional<std::string>("it failed") : std::nullopt};
      break;
    }
    default:
      break;
  }
  std::shared_ptr<FakeRunningApplication>& front = platform_->workspace->frontmost;
  if (step.event == Event::changeFront || step.event == Event::allIsWell) {
    front = world.frontmost ? std::make_shared<FakeRunningApplication>(world.frontmost->identifier,
                                                                       world.frontmost->process)
                            : nullptr;
  }
}

void RealController::writeSnapshot(const Folder& folder, std::size_t at, int variant) {
  const fs::path path = file(at, snapshotNames[at]);
  fs::remove_all(path);
  if (!folder.snapshot) return;
  const Snapshot& snapshot = *folder.snapshot;
  if (!snapshot.readable) {
    if (variant == 15) {
      fs::create_directory(path);
    } else {
      writeText(path, oneOf(noSnapshots, variant));
    }
    return;
  }
  OverlaySnapshot record{snapshot.version, snapshot.updatedAt, snapshot.enabled, snapshot.title,
                         snapshot.artist,  snapshot.fontSize,  snapshot.offset,  {}};
  for (const Line& line : snapshot.lines)
    record.lines.edit().push_back({line.source, line.translation});
  writeText(path, encode(record).value());
}

void RealController::writeSync(const Folder& folder, std::size_t at) {
  const fs::path path = file(at, "sync.json");
  fs::remove(path);
  if (!folder.sync) return;
  const SyncRequest record{folder.sync->updatedAt};
  writeText(path, folder.sync->readable ? encode(record).value() : "{\"updatedAt\":\"now\"}");
}

void RealController::writeCommand(const Folder& folder, std::size_t at, int variant) {
  const fs::path path = file(at, "command.json");
  fs::remove(path);
  if (!folder.command) return;
  if (!folder.command->readable) return writeText(path, oneOf(noCommands, variant));
  const MusicCommand record(folder.command->requestedAt,
                            MusicCommand::actionNamed(folder.command->action).value(), "Song");
  writeText(path, encode(record).value());
}

void RealController::launch() { controller_->applicationDidFinishLaunching(); }
void RealController::tick() { platform_->app.fireTimers(); }
void RealController::finishReading() { platform_->app.runMain(); }
void RealController::choose(std::size_t menuEntry) {
  platform_->statusItem->menu[menuEntry].action();
}

void RealController::read(const World& world) {
  platform_->accessibility->applications.clear();
  platform_->accessibility->applications[world.player.process] = playerTree(world.player);
  for (const auto& queue : platform_->app.queues) {
    if (queue->gone) queue->work.clear();
    while (!queue->work.empty()) {
      const auto work = std::move(queue->work.front());
      queue->work.pop_front();
      work();
    }
  }
  std::erase_if(platform_->app.queues, [](const auto& queue) { return queue->gone; });
}

void RealController::openUrl(const OpenedUrl& url) {
  if (url.form.empty()) return controller_->applicationOpen({});
  std::string text = url.form;
  const std::string folder = (root_ / folderNames[url.folder.value_or(1)]).native();
  if (const auto at = text.find("FOLDER"); at != std::string::npos) text.replace(at, 6, folder);
  controller_->applicationOpen({text, "tessaly-overlay:?snapshot=/a/Vellora/snapshot.json"});
}

std::string RealController::difference(const ControllerModel& model, const World& world,
                                       std::size_t at) {
  const OverlayDelegate& real = *controller_;
  if (platform_->clock->now() != world.now) {
    return shown("the time", platform_->clock->now(), world.now);
  }
  if (platform_->panel->visible != model.panelShown) {
    return shown("the panel's visibility", platform_->panel->visible, model.panelShown);
  }
  if (real.statusMessage != model.statusMessage) {
    return shown("the status line", real.statusMessage, model.statusMessage);
  }
  if (platform_->statusItem != nullptr && platform_->statusItem->toolTip != model.toolTip) {
    return shown("the tooltip", platform_->statusItem->toolTip, model.toolTip);
  }
  if (real.scanning != model.scanning) return shown("scanning", real.scanning, model.scanning);
  if (real.lastFresh != model.lastFresh) {
    return shown("the last fresh snapshot", real.lastFresh, model.lastFresh);
  }
  const auto asked = std::ranges::count(platform_->log, "requestTrust");
  if (static_cast<std::size_t>(asked) != model.trustRequests) {
    return shown("requests for trust", static_cast<double>(asked),
                 static_cast<double>(model.trustRequests));
  }
  const auto ends = std::ranges::count(platform_->log, "terminate");
  if (static_cast<std::size_t>(ends) != model.terminations) {
    return shown("ends", static_cast<double>(ends), static_cast<double>(model.terminations));
  }
  const auto& requests = platform_->scripting->requests;
  std::string ran;
  std::string expected;
  for (const auto& request : requests) {
    ran += request.command ? MusicCommand::name(request.command->command.action) : "?";
    ran += ' ';
  }
  for (const auto& script : model.scripts) expected += script + ' ';
  platform_->scripting->requests.clear();
  if (ran != expected) return shown("what ran", ran, expected);
  if (auto found = captionDifference(model); !found.empty()) return found;
  return model.folder ? fileDifference(world.folders[at], at) : "";
}

std::string RealController::captionDifference(const ControllerModel& model) const {
  const auto& captions = controller_->canvas.captions();
  if (captions.size() != model.captions.size()) {
    return shown("the number of captions", static_cast<double>(captions.size()),
                 static_cast<double>(model.captions.size()));
  }
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const Caption& is = captions[i];
    const ModelCaption& expected = model.captions[i];
    if (is.text != expected.text) return shown("a caption", is.text, expected.text);
    if (!same(is.rect, expected.rect)) return "another place of \"" + is.text + "\"";
    if (is.font != expected.font) return shown("a font", is.font, expected.font);
    if (is.softness != expected.softness) {
      return shown("a softness", is.softness, expected.softness);
    }
  }
  if (!same(platform_->panel->lastFrame, model.panelFrame)) return "another frame of the panel";
  if (!same(platform_->view->lastFrame, model.canvasFrame)) return "another frame of the canvas";
  const auto& kept = controller_->translations;
  const bool alike = std::ranges::all_of(model.translations, [&](const auto& entry) {
    const auto found = kept.find(entry.first);
    return found != kept.end() && found->second == entry.second;
  });
  return alike && kept.size() == model.translations.size() ? "" : "other translations are kept";
}

std::string RealController::fileDifference(const Folder& folder, std::size_t at) const {
  if (!folder.there) return fileExists(root_ / folderNames[at]) ? "a folder was made" : "";
  if (fileExists(file(at, "command.json")) != folder.command.has_value()) {
    return shown("the command's file", !folder.command.has_value(), folder.command.has_value());
  }
  const auto status = readWholeFile(file(at, "status.json"));
  std::string expected;
  if (folder.status) {
    expected = "{\"message\":\"" + folder.status->message +
               "\",\"stopped\":" + (folder.status->stopped ? "true" : "false") + "}";
  }
  if (status.value_or("") != expected)
    return shown("the status file", status.value_or(""), expected);
  return nowPlayingDifference(folder, at);
}

std::string RealController::nowPlayingDifference(const Folder& folder, std::size_t at) const {
  const auto bytes = readWholeFile(file(at, "nowplaying.json"));
  if (bytes.has_value() != folder.nowPlaying.has_value()) return "nowplaying.json is there, or not";
  if (!bytes) return "";
  const auto track = decode<NowPlayingTrack>(*bytes);
  const NowPlaying& expected = *folder.nowPlaying;
  const bool alike = track && track->version == 1 && track->updatedAt == expected.updatedAt &&
                     track->title == expected.title && track->artist == expected.artist &&
                     track->album == expected.album && track->position == expected.position &&
                     track->playing == expected.playing;
  return alike ? "" : "nowplaying.json is " + *bytes;
}

std::string RealController::differenceOnDisk(const World& world) {
  for (std::size_t at = 0; at < world.folders.size(); ++at) {
    if (auto found = fileDifference(world.folders[at], at); !found.empty()) return found;
    if (!world.folders[at].there) continue;
    for (const auto& entry : fs::directory_iterator(root_ / folderNames[at])) {
      const std::string name = entry.path().filename();
      if (name.starts_with(".vellora-")) return "left behind: " + name;
    }
  }
  return "";
}

}  // namespace vellora::model
