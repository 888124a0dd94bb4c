#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/glib/bus_watch.h"
#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/bus_calls.h"
#include "platform/linux/wayland/locator/known_windows.h"
#include "platform/linux/wayland/locator/kwin_reports.h"
#include "platform/linux/wayland/locator/kwin_script.h"

namespace vellora {

// The windows of KWin 5, by a script that it runs for us (org.kde.kwin.Scripting) and that reports
// them at each change. The script is loaded whenever KWin comes to the bus, and unloaded at the
// end; what a killed process left behind is unloaded first. Reports of others than KWin are not
// listened to. While somebody depends on places KWin is asked once a second whether the script is
// there still; after two seconds without an answer nothing is known until one comes.
class KWinLocator final : public KnownWindows {
 public:
  KWinLocator();
  ~KWinLocator() override;

  std::string name() const override { return "KWin's scripting"; }
  void setWatched(bool isWatched) override;

 private:
  void present(const SessionBus& bus);
  void gone();
  void vanished();
  void load();
  void run(std::int32_t number);
  void loadLater();
  void startAll();
  void check();
  void checkLater();
  void takeReport(const char* json);

  std::optional<std::vector<LocatedWindow>> reported_;  // also while KWin does not answer
  std::unique_ptr<KWinScriptFile> file_;
  bool isWatched_ = false;
  GSourcePtr loading_;
  GSourcePtr checking_;
  // On the bus that is there.
  std::unique_ptr<BusCalls> calls_;
  std::unique_ptr<KWinReports> reports_;
  std::unique_ptr<BusWatch> watch_;
};

}  // namespace vellora
