#include "companion/program/keeping.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "base/environment.h"
#include "companion/exchange/folder.h"
#include "companion/exchange/folder_lock.h"
#include "companion/program/additions.h"
#include "companion/program/feeding.h"
#include "companion/program/interruption.h"
#include "companion/program/online.h"
#include "companion/settings/user_folders.h"
#include "companion/view/plain_view.h"
#include "companion/view/terminal_view.h"
#include "platform/system_clock.h"

namespace vellora::companion {
namespace {

// What the overlay writes into the exchange folder. Where that cannot be watched, it is looked at
// several times a second.
class FolderWatching {
 public:
  FolderWatching(const WatchFolder& watch, const std::filesystem::path& folder)
      : watch_(watch), folder_(folder) {
    begin();
  }

  // Whether one of the files may have changed since the last call. To be called before they are
  // read, and once more afterwards: what this program has written itself is then taken, too.
  bool take() {
    if (!folderWatch_) begin();
    if (!folderWatch_) return false;
    const bool any = folderWatch_->take();
    if (!folderWatch_->watches()) begin();
    return any;
  }
  int descriptor() const { return folderWatch_ ? folderWatch_->descriptor() : -1; }
  double pause() const { return folderWatch_ ? Keeper::idleInterval : Keeper::stepInterval; }

 private:
  void begin() {
    folderWatch_ = watch_ ? watch_(folder_, {nowPlayingFileName, statusFileName}) : nullptr;
  }

  const WatchFolder& watch_;
  std::filesystem::path folder_;
  std::unique_ptr<FolderWatch> folderWatch_;
};

// What the keys have changed, as lines for the settings' file.
void tellChanged(const Options& options, const Feeding& feeding) {
  Settings changed = options;
  changed.captions = feeding.settings();
  if (feeding.chosenLanguage()) changed.language = *feeding.chosenLanguage();
  for (const Setting& setting : allSettings()) {
    const std::string value = shownSetting(setting, changed);
    if (value == shownSetting(setting, options)) continue;
    std::cerr << "to keep it, put into " << options.configFile.string() << ": " << setting.key
              << " = " << value << "\n";
  }
}

}  // namespace

int keep(const Options& options, Surroundings surroundings) {
  std::error_code error;
  if (!std::filesystem::is_directory(options.folder, error)) {
    return fail(filesFailed, options.folder.string() + " is no folder");
  }
  ExchangeFolder folder(options.exchange);
  if (const auto reason = folder.make()) return fail(filesFailed, *reason);
  const FolderLock lock(folder.path());
  if (lock.state() == FolderLock::State::anothers) {
    return fail(folderTaken, folder.path().string() + " is fed by another companion, " +
                                 lock.reason() +
                                 "; end that, or name another folder with --exchange");
  }
  if (lock.state() == FolderLock::State::unavailable) {
    std::cerr << "no other companion can be kept from the exchange folder: " << lock.reason()
              << "\n";
  }

  // What an overlay that was ended by a signal has left; one that runs says it again.
  if (const auto left = folder.status(); left && !left->stopped) folder.withdrawStatus();

  const Interruption interruption;
  Keeper keeper(Library(options.folder, options.language), options.captions);
  addToLines(keeper, options);
  keeper.askElsewhere(lyricsFromElsewhere(options));
  const auto state = stateFolder(environmentVariable);
  const SystemClock clock;
  Feeding feeding(clock, std::move(keeper), folder,
                  LyricShift(state ? *state / "vellora" / "lyric-shifts" : ""));
  std::unique_ptr<View> view;
  if (!options.plain) view = makeTerminalView();
  if (view) feeding.listenTo(std::move(surroundings.players));
  if (!view) view = std::make_unique<PlainView>(std::cout);
  view->show(feeding.step());
  if (options.overlay) feeding.startOverlay(options);
  FolderWatching files(surroundings.watchFolder, folder.path());
  bool wanted = true;
  while (wanted && !interruption.asked() && !feeding.displayIsGone()) {
    files.take();
    const ViewState seen = feeding.step();
    view->show(seen);
    const double pause = std::min({feeding.pause(), files.pause(), view->lasts(seen)});
    interruption.wait(files.take() ? 0 : pause, {view->input(), files.descriptor()});
    for (const Wish wish : view->take()) wanted = feeding.grant(wish) && wanted;
  }
  view.reset();
  tellChanged(options, feeding);
  feeding.end();
  interruption.take();
  if (feeding.displayIsGone())
    return fail(noOverlay, "the display is gone, and the overlay with it");
  return allWell;
}

}  // namespace vellora::companion
