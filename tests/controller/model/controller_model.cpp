#include "controller/model/controller_model.h"

#include <algorithm>
#include <cmath>

#include "controller/model/plain_captions.h"

namespace vellora::model {

namespace {

// Less than `longest` old, and at most a second ahead.
bool isRecent(double time, double now, double longest) {
  return now - time < longest && time - now <= 1;
}

}  // namespace

Folder* ControllerModel::exchange() {
  if (!folder || !world_.folders[*folder].there) return nullptr;
  return &world_.folders[*folder];
}

bool ControllerModel::syncing() {
  const Folder* const files = exchange();
  return files != nullptr && files->sync && files->sync->readable &&
         isRecent(files->sync->updatedAt, world_.now, 25);
}

bool ControllerModel::isUsable(const Snapshot& snapshot) const {
  return snapshot.readable && snapshot.version == 1 && snapshot.enabled &&
         isRecent(snapshot.updatedAt, world_.now, 6);
}

bool ControllerModel::musicIsInFront() const {
  return world_.frontmost && world_.frontmost->identifier == "com.apple.Music";
}

void ControllerModel::launch(bool statusItemIsShown) {
  hasToolTip_ = statusItemIsShown;
  if (hasToolTip_) toolTip = statusMessage.empty() ? "Vellora" : statusMessage;
  tick();
}

void ControllerModel::openFolder(std::size_t opened) {
  folder = opened;
  lastFresh = world_.now;
  statusMessage.clear();
  tick();
}

void ControllerModel::tick() {
  const bool served = syncing();
  if (served) {
    runCommand();
    publish();
  }

  const Folder* const files = exchange();
  if (files == nullptr || !files->snapshot || !isUsable(*files->snapshot)) {
    hide(served ? "Following Music for Tessaly" : "Waiting for fresh lyrics from Tessaly");
    if (!served && world_.now - lastFresh > 15) stop();
    return;
  }
  lastFresh = world_.now;

  if (!world_.trusted) {
    if (!askedForTrust_) askForTrust();
    hide("Allow Vellora in System Settings → Privacy & Security → Accessibility");
    return;
  }
  if (!musicIsInFront()) {
    hide("Ready — bring Music to the front");
    return;
  }
  if (scanning) return;
  scanning = true;
  flight_ = Flight{world_.frontmost->process, *files->snapshot, false, {}};
}

void ControllerModel::runCommand() {
  Folder* const files = exchange();
  if (!files->command || !files->command->readable) return;
  const Command command = *files->command;
  files->command.reset();
  if (!isRecent(command.requestedAt, world_.now, 20)) return;
  runScript(command.action);
  lastPublish = -std::numeric_limits<double>::infinity();
}

void ControllerModel::publish() {
  if (world_.now - lastPublish < 0.5) return;
  lastPublish = world_.now;
  runScript("?");
  const PlayerReply& reply = world_.reply;
  if (!reply.made || !reply.hasText) return;
  const auto& fields = reply.fields;
  if (fields.size() < 2 || fields[0].empty()) return;
  const auto field = [&](std::size_t i) { return i < fields.size() ? fields[i] : std::string(); };
  NowPlaying& playing = exchange()->nowPlaying.emplace();
  playing.updatedAt = world_.now;
  playing.title = field(0);
  playing.artist = field(1);
  playing.album = field(2);
  playing.position = field(3) == "12500" ? 12.5 : 0;
  playing.playing = field(4) == "playing";
}

void ControllerModel::runScript(const std::string& name) {
  scripts.push_back(name);
  world_.now += world_.scriptSeconds;
}

void ControllerModel::askForTrust() {
  askedForTrust_ = true;
  ++trustRequests;
}

void ControllerModel::report(const std::string& message, bool stopped) {
  if (!folder) return;
  Folder* const files = exchange();
  const bool fileIsThere = files != nullptr && (files->status || files->statusIsFolder);
  if (message == statusMessage && !stopped && fileIsThere) return;
  statusMessage = message;
  if (hasToolTip_) toolTip = message;
  if (files != nullptr && !files->statusIsFolder) files->status = Status{message, stopped};
}

void ControllerModel::hide(const std::string& message) {
  panelShown = false;
  report(message);
}

void ControllerModel::stop() {
  report("Overlay stopped", true);
  panelShown = false;
  if (!syncing()) ++terminations;
}

void ControllerModel::read() {
  if (!flight_ || flight_->made) return;
  flight_->made = true;
  flight_->reading = readPlayer(flight_->process);
}

void ControllerModel::finishReading() {
  if (!flight_ || !flight_->made) return;
  const Flight landed = *flight_;
  flight_.reset();
  scanning = false;
  if (musicIsInFront() && isUsable(landed.snapshot)) {
    compose(landed.reading, landed.snapshot);
  } else {
    hide("Ready — bring Music to the front");
  }
}

std::optional<Reading> ControllerModel::readPlayer(std::int32_t process) const {
  const PlayerWindow& player = world_.player;
  if (!world_.trusted || player.process != process || !player.there) return {};
  if (player.minimised || player.frame.width == 0) return {};
  Reading reading;
  reading.window = player.frame;
  reading.title = player.title.value_or("");
  if (!player.lyricsShown) return reading;
  reading.viewport = commonPart(player.scrollArea, player.frame);
  for (Row row : player.rows) {
    row.frame.y -= player.scrolled;
    reading.rows.push_back(row);
  }
  std::stable_sort(reading.rows.begin(), reading.rows.end(),
                   [](const Row& a, const Row& b) { return a.frame.y < b.frame.y; });
  return reading;
}

void ControllerModel::compose(const std::optional<Reading>& reading, const Snapshot& snapshot) {
  if (!reading || !reading->viewport || reading->viewport->width == 0 ||
      reading->viewport->height == 0) {
    return hide("Open Music’s Now Playing view and show Lyrics");
  }
  if (!namesTrack(reading->title, snapshot.title, snapshot.artist)) {
    return hide("Waiting for translations for this song");
  }
  if (snapshot.lines != lastLines_) {
    lastLines_ = snapshot.lines;
    translations.clear();
  }
  const double font = std::clamp(snapshot.fontSize * 0.65, 12.0, 32.0);
  std::vector<ModelCaption> made;
  for (std::size_t i = 0; i < reading->rows.size(); ++i) {
    const Row& row = reading->rows[i];
    if (!commonPart(row.frame, *reading->viewport)) continue;
    const std::string translation = translationOf(row.text, snapshot.lines);
    if (translation.empty()) continue;
    std::optional<Box> next;
    if (i + 1 < reading->rows.size()) next = reading->rows[i + 1].frame;
    auto place = captionPlace(row.frame, next, *reading->viewport, captionHeight(translation, font),
                              snapshot.offset);
    if (!place) continue;
    place->x -= reading->window.x;
    place->y -= reading->window.y;
    made.push_back({translation, *place, font, softnessOf(row.frame, *reading->viewport)});
  }
  if (made.empty()) {
    return hide("No matching rows with room below them — try the alignment slider");
  }
  const Box& window = reading->window;
  panelFrame = {window.x, world_.screenHeight.value_or(0) - (window.y + window.height),
                window.width, window.height};
  canvasFrame = {0, 0, window.width, window.height};
  captions = made;
  panelShown = true;
  report("Following Music • " + std::to_string(made.size()) + " translated rows");
}

// Kept for as long as the lines stay, which a plain lookup at each call could not be told from but
// for what is kept.
std::string ControllerModel::translationOf(const std::string& text,
                                           const std::vector<Line>& lines) {
  return translations.try_emplace(text, plainLookup(text, lines)).first->second;
}

}  // namespace vellora::model
