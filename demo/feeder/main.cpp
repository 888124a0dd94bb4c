#include <chrono>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "base/files.h"
#include "exchange/records/json.h"
#include "feeder/feeder.h"
#include "feeder/options.h"
#include "feeder/step_loop.h"
#include "library/song.h"
#include "library/songs_of_program.h"

namespace vellora::demo {
namespace {

constexpr std::chrono::milliseconds stepInterval(200);

int fail(const std::string& message) {
  std::fprintf(stderr, "vellora-demo-feeder: %s\n", message.c_str());
  return 2;
}

void say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

// Seconds since 1970.
double wallClock() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

// The feeder's logic with the exchange folder's files around it.
class Folder {
 public:
  Folder(Feeder feeder, std::filesystem::path path)
      : feeder_(std::move(feeder)), path_(std::move(path)) {}

  void step() {
    const auto bytes = readWholeFile(path_ / nowPlayingFileName);
    const auto published = bytes ? decode<NowPlayingTrack>(*bytes) : std::nullopt;
    const Feeder::Step step = feeder_.step(wallClock(), published);
    if (step.sync) write(syncRequestFileName, encode(*step.sync));
    if (step.snapshot) write("snapshot.json", encode(*step.snapshot));
    if (step.news) say(*step.news);
  }

 private:
  // Says once when writing begins to fail, and once when it works again.
  void write(std::string_view name, const std::optional<std::string>& json) {
    const bool written = json && writeFileAtomically(path_ / name, *json);
    if (written == writable_) return;
    writable_ = written;
    say(written ? "the exchange folder can be written again"
                : "the exchange folder cannot be written: " + path_.string());
  }

  Feeder feeder_;
  std::filesystem::path path_;
  bool writable_ = true;
};

int feed(const FeederOptions& options) {
  auto songs = loadSongs(options.songs);
  if (const auto* error = std::get_if<SongError>(&songs)) return fail(error->text());
  Folder folder(Feeder(std::get<std::vector<Song>>(std::move(songs)), options.captions),
                options.folder);
  stepUntilTerminated(stepInterval, [&folder] { folder.step(); });
  return 0;
}

int send(const std::filesystem::path& folder, MusicCommand command) {
  command.requestedAt = wallClock();
  const auto json = encode(command);
  const auto path = folder / commandFileName;
  if (!json || !writeFileAtomically(path, *json)) return fail("cannot write " + path.string());
  say(std::string(MusicCommand::name(command.action)) + " left in " + path.string());
  return 0;
}

}  // namespace
}  // namespace vellora::demo

int main(int argc, char** argv) {
  using namespace vellora::demo;
  const auto options =
      parseFeederOptions(std::vector<std::string>(argv + 1, argv + argc), songsOfProgram());
  if (const auto* error = std::get_if<std::string>(&options)) {
    return fail(*error + "; --help tells what there is");
  }
  const auto& chosen = std::get<FeederOptions>(options);
  if (chosen.help) {
    std::fputs(std::string(feederHelp()).c_str(), stdout);
    return 0;
  }
  std::error_code failure;
  std::filesystem::create_directories(chosen.folder, failure);
  if (failure) return fail(chosen.folder.string() + ": " + failure.message());
  return chosen.command ? send(chosen.folder, *chosen.command) : feed(chosen);
}
