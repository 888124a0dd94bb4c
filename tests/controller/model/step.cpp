#include "controller/model/step.h"

#include <ostream>

namespace vellora::model {

namespace {

constexpr const char* names[] = {
    "wait",          "allIsWell",     "writeSnapshot",    "breakSnapshot",  "removeSnapshot",
    "writeSync",     "breakSync",     "removeSync",       "writeCommand",   "breakCommand",
    "removeCommand", "removeStatus",  "blockStatus",      "takeFolderAway", "bringFolderBack",
    "changeFront",   "changeTrust",   "changeWindow",     "changeRows",     "scroll",
    "changeTitle",   "changeReply",   "changeScriptTime", "changeScreen",   "tick",
    "read",          "finishReading", "openUrl",          "chooseAllow",    "chooseStop",
    "launch",        "startAgain"};
static_assert(std::size(names) == eventCount);

template <typename Value, std::size_t size>
const Value& oneOf(const Value (&values)[size], int number) {
  return values[static_cast<std::size_t>(number) % size];
}

// Seconds that pass; the clock may be set back, and the computer sleep.
constexpr double waits[] = {0.125, 0.125, 0.5, 0.375,  1,    2,  5,      6,
                            15,    20,    25,  15.125, 3600, -2, -0.125, 0.25};
constexpr double snapshotAges[] = {0, 0, 1, 5.875, 6, -1, -1.125, 3};
constexpr double syncAges[] = {0, 0, 10, 24.875, 25, -1, -1.125, 24};
constexpr double commandAges[] = {0, 5, 19.875, 20, -1, -1.125, 10, 25};
constexpr const char* actions[] = {"play", "seek", "playPause", "previous", "next"};

const std::vector<Line> songs[] = {
    {{"Hello world", "Hallo Welt"},
     {"Hold on,", " Halt fest \n"},
     {"hold on to me", "an mir"},
     {"Hold on to me", "an mich"},
     {"La la", ""},
     {"The end", "Das Ende, das lange auf sich warten liess"}},
    {{"Hello world", "Bonjour le monde"}, {"The end", "La fin"}},
    {{"one", "eins"},
     {"two", "zwei"},
     {"three", "drei"},
     {"four", "vier"},
     {"five", "fuenf"},
     {"six", "sechs"},
     {"seven", "sieben"}},
    {},
};
const std::vector<std::string> rowTexts[] = {
    {"Hello world"},
    {"Hello world", "Hold on, hold on to me", "HOLD ON TO ME", "La la", "The end"},
    {"one two three four five six", "one two three four five six seven", "seven", "..."},
    {"Hello world", "Hello world", "the end!", "nobody knows this"},
    {},
};

Snapshot snapshot(double now, const Step& step) {
  Snapshot made;
  made.updatedAt = now - oneOf(snapshotAges, step.a);
  made.enabled = step.b != 5;
  made.version = step.b == 6 ? 2 : 1;
  made.title = step.b == 7 ? "Day Drive" : step.b == 8 ? "..." : "Night Drive";
  made.artist = "River Band";
  constexpr double fonts[] = {32, 10, 60, 30};
  made.fontSize = oneOf(fonts, step.b / 2);
  constexpr double offsets[] = {0, -10, 5, 40, -400};
  made.offset = oneOf(offsets, step.b / 3);
  made.lines = songs[static_cast<std::size_t>(step.b) % std::size(songs)];
  return made;
}

void changeFile(World& world, Folder& files, const Step& step) {
  switch (step.event) {
    case Event::writeSnapshot:
      files.snapshot = snapshot(world.now, step);
      break;
    case Event::breakSnapshot:
      files.snapshot.emplace().readable = false;
      break;
    case Event::removeSnapshot:
      files.snapshot.reset();
      break;
    case Event::writeSync:
      files.sync = Sync{true, world.now - oneOf(syncAges, step.a)};
      break;
    case Event::breakSync:
      files.sync = Sync{false, world.now};
      break;
    case Event::removeSync:
      files.sync.reset();
      break;
    case Event::writeCommand:
      files.command = Command{true, world.now - oneOf(commandAges, step.a), oneOf(actions, step.b)};
      break;
    case Event::breakCommand:
      files.command = Command{false, world.now, ""};
      break;
    case Event::removeCommand:
      files.command.reset();
      break;
    case Event::removeStatus:
      files.status.reset();
      files.statusIsFolder = false;
      break;
    default:
      files.status.reset();
      files.statusIsFolder = true;
      break;
  }
}

void setRows(PlayerWindow& player, const Step& step) {
  player.rows.clear();
  double top = 200;
  for (const std::string& text : oneOf(rowTexts, step.a)) {
    const double width = step.b == 9 ? 40 : step.b == 10 ? 40.5 : 360;
    const double gap = step.b == 11 ? 30 : step.b == 12 ? 61 : 90;
    player.rows.push_back({text,
                           {step.b == 13   ? 1050.0
                            : step.b == 14 ? 500.0
                                           : 620.0,
                            top, width, 40}});
    // The last variant's rows come from below.
    top += step.b == 15 ? -gap : gap;
  }
}

void changeWindow(PlayerWindow& player, int variant) {
  const PlayerWindow usual;
  player.there = variant != 1;
  player.minimised = variant == 2;
  player.lyricsShown = variant != 4;
  player.frame = usual.frame;
  player.scrollArea = usual.scrollArea;
  player.process = variant == 7 ? 815 : usual.process;
  if (variant == 3) player.frame.width = 0;
  if (variant == 5) player.scrollArea = {2000, 100, 580, 650};  // outside the window
  if (variant == 6) player.frame = {-300, 10, 1100, 700};       // partly off the screen
  if (variant == 8) player.scrollArea.width = 100;              // too narrow for a caption
  if (variant == 9) player.scrollArea = {1200, 100, 580, 650};  // touches the window
}

void changeFront(World& world, int variant) {
  constexpr std::int32_t process = 4711;
  if (variant == 0) world.frontmost.reset();
  if (variant == 1) world.frontmost = Program{"org.example.Editor", 12};
  if (variant == 2) world.frontmost = Program{std::nullopt, process};
  if (variant == 3) world.frontmost = Program{"com.apple.music", process};
  if (variant == 4) world.frontmost = Program{"com.apple.Music", 815};
  if (variant > 4) world.frontmost = Program{"com.apple.Music", process};
}

void changeReply(PlayerReply& reply, int variant) {
  reply = {};
  if (variant == 0) reply.made = false;
  if (variant == 1) reply.hasText = false;
  if (variant == 2) reply.fails = true;
  if (variant == 3) return;  // nothing plays
  if (variant == 4) {
    reply.fields = {"Night Drive"};
  } else if (variant == 5) {
    reply.fields = {"", "River Band"};
  } else if (variant == 6) {
    reply.fields = {"A", "B", "River Band", "Album", "12500", "playing"};
  } else if (variant == 7) {
    reply.fields = {"Night Drive", "River Band", "", "12500", "paused"};
  } else if (variant == 8) {
    reply.fields = {"Night Drive", "River Band", "Album", "twelve", "Playing"};
  } else {
    reply.fields = {"Night Drive", "River Band", "Album", "12500", "playing"};
  }
}

void makeAllWell(World& world, Folder& files, const Step& step) {
  world.trusted = true;
  changeFront(world, 5);
  changeWindow(world.player, 0);
  world.player.title = "Night Drive — River Band";
  world.player.scrolled = 0;
  setRows(world.player, {step.event, step.a, 0});
  if (!files.there) return;
  files.snapshot = snapshot(world.now, {Event::writeSnapshot, 0, step.b % 2});
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Step& step) {
  return out << names[static_cast<std::size_t>(step.event)] << '(' << step.a << ',' << step.b
             << ')';
}

bool change(World& world, const Step& step, std::size_t at) {
  Folder& files = world.folders[at];
  if (step.event >= Event::tick) return false;
  if (step.event >= Event::writeSnapshot && step.event <= Event::blockStatus) {
    if (files.there) changeFile(world, files, step);
    return true;
  }
  if (step.event == Event::wait) world.now += oneOf(waits, step.a);
  if (step.event == Event::allIsWell) makeAllWell(world, files, step);
  if (step.event == Event::takeFolderAway) files.there = false;
  if (step.event == Event::bringFolderBack) files.there = true;
  if (step.event == Event::changeFront) changeFront(world, step.a % 8);
  if (step.event == Event::changeTrust) world.trusted = step.a % 2 == 0;
  if (step.event == Event::changeWindow) changeWindow(world.player, step.a % 10);
  if (step.event == Event::changeRows) setRows(world.player, step);
  if (step.event == Event::scroll) world.player.scrolled = 45.0 * step.a - 200;
  if (step.event == Event::changeTitle) {
    const std::optional<std::string> titles[] = {"Night Drive — River Band",
                                                 "NIGHT DRIVE river band (live)",
                                                 "River Band — Night Drive",
                                                 "Day Drive — River Band",
                                                 "",
                                                 std::nullopt};
    world.player.title = oneOf(titles, step.a);
  }
  if (step.event == Event::changeReply) changeReply(world.reply, step.a);
  if (step.event == Event::changeScriptTime) {
    constexpr double times[] = {0, 0, 0.125, 0.5, 6};
    world.scriptSeconds = oneOf(times, step.a);
  }
  if (step.event == Event::changeScreen) {
    const std::optional<double> heights[] = {1000.0, 1440.0, 0.0, std::nullopt};
    world.screenHeight = oneOf(heights, step.a);
  }
  return true;
}

OpenedUrl openedUrl(const Step& step) {
  const std::size_t named = 1 + static_cast<std::size_t>(step.b) % 2;
  switch (step.a) {
    case 0:
      return {"", {}};  // none at all
    case 1:
      return {"Tessaly-overlay://open?snapshot=FOLDER/snapshot.json", {}};
    case 2:
      return {"tessaly-overlay://open?snapshot=FOLDER/lines.json", {}};
    case 3:
      return {"tessaly-overlay://open?snapshot=Vellora/snapshot.json", {}};
    case 4:
      return {"tessaly-overlay://open?snapshot&snapshot=FOLDER/snapshot.json", {}};
    case 5:
      return {"tessaly-overlay:?other=1&snapshot=FOLDER/snapshot.json&snapshot=/a", named};
    default:
      return {"tessaly-overlay://open?snapshot=FOLDER/snapshot.json", named};
  }
}

}  // namespace vellora::model
