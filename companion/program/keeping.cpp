#include "companion/program/keeping.h"

#include <iostream>
#include <system_error>
#include <utility>

#include "companion/exchange/folder.h"
#include "companion/program/interruption.h"
#include "companion/program/wall_clock.h"
#include "companion/view/plain_view.h"

namespace vellora::companion {
namespace {

constexpr double stepInterval = 0.1;  // seconds

int fail(ExitStatus status, const std::string& message) {
  std::cerr << "vellora-companion: " << message << "\n";
  return status;
}

// The keeper with the exchange folder's files and the clock around it.
class Keeping {
 public:
  Keeping(Keeper keeper, ExchangeFolder folder)
      : keeper_(std::move(keeper)), folder_(std::move(folder)) {}

  ViewState step() {
    const double now = clock_.now();
    const Keeper::Step step = keeper_.step(now, folder_.nowPlaying());
    bool written = true;
    if (step.sync) written = folder_.write(*step.sync);
    if (step.snapshot) written = folder_.write(*step.snapshot) && written;
    if (step.sync || step.snapshot) {
      notice_ = written ? "" : folder_.path().string() + " cannot be written";
    }
    return state(now);
  }

  // Leaves nothing behind that goes on working.
  void end() {
    OverlaySnapshot off;
    off.updatedAt = clock_.now();
    folder_.write(off);
    folder_.withdrawRequest();
  }

 private:
  ViewState state(double now) {
    ViewState state;
    state.track = keeper_.track();
    if (state.track) state.position = state.track->playbackTime(now).value_or(0);
    state.song = keeper_.playing();
    if (state.song != nullptr) state.line = state.song->song.lineAt(state.position);
    if (const auto status = folder_.status()) state.overlay = status->message;
    state.settings = keeper_.settings();
    state.snapshot = folder_.snapshotPath();
    state.songsInLibrary = keeper_.library().songs().size();
    state.notice = notice_;
    return state;
  }

  WallClock clock_;
  Keeper keeper_;
  ExchangeFolder folder_;
  std::string notice_;
};

}  // namespace

int keep(const Options& options) {
  std::error_code error;
  if (!std::filesystem::is_directory(options.lyrics, error)) {
    return fail(filesFailed, options.lyrics.string() + " is no folder");
  }
  const ExchangeFolder folder(options.exchange);
  if (const auto reason = folder.make()) return fail(filesFailed, *reason);

  const Interruption interruption;
  Library library(options.lyrics, options.language);
  library.refresh();
  for (const Problem& problem : library.problems()) {
    if (problem.severity == Severity::error) std::cerr << problem.text() << "\n";
  }
  Keeping keeping(Keeper(std::move(library), options.captions), folder);
  PlainView view(std::cout);
  while (!interruption.asked()) {
    view.show(keeping.step());
    view.wait(stepInterval);
  }
  keeping.end();
  interruption.take();
  return allWell;
}

}  // namespace vellora::companion
