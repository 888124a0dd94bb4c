#include "platform/linux/wayland/locator/kwin_locator.h"

#include <chrono>
#include <utility>

#include "platform/linux/glib/event_source.h"
#include "platform/linux/wayland/locator/kwin_report.h"

namespace vellora {

namespace {

using std::chrono::milliseconds;

constexpr const char* service = "org.kde.KWin";
constexpr milliseconds answerTime(2000);
constexpr guint pause = 1000;  // milliseconds, between two checks, and after a failed loading
constexpr milliseconds farewell(250);

constexpr BusCalls::Method scripting(const char* method) {
  return {service, "/Scripting", "org.kde.kwin.Scripting", method};
}

}  // namespace

KWinLocator::KWinLocator()
    : watch_(std::make_unique<BusWatch>([this](const SessionBus& bus) { present(bus); },
                                        [this] { gone(); })) {}

KWinLocator::~KWinLocator() {
  if (calls_ && file_ && reports_->isPresent()) {
    const GVariantPtr answer(g_dbus_connection_call_sync(
        calls_->bus(), service, "/Scripting", "org.kde.kwin.Scripting", "unloadScript",
        g_variant_new("(s)", file_->name().c_str()), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<gint>(farewell.count()), nullptr, nullptr));
  }
}

void KWinLocator::setWatched(bool isWatched) {
  if (std::exchange(isWatched_, isWatched) == isWatched) return;
  checkLater();
}

void KWinLocator::present(const SessionBus& bus) {
  calls_ = std::make_unique<BusCalls>(shareObject(bus.get()));
  reports_ = std::make_unique<KWinReports>(
      shareObject(bus.get()),
      KWinReports::Listener{.appeared = [this] { load(); },
                            .vanished = [this] { vanished(); },
                            .reported = [this](const char* json) { takeReport(json); }});
}

void KWinLocator::gone() {
  reports_.reset();
  calls_.reset();
  vanished();
}

void KWinLocator::vanished() {
  loading_.reset();
  checking_.reset();
  file_.reset();
  reported_.reset();
  tell(std::nullopt);
}

void KWinLocator::load() {
  loading_.reset();
  auto abandoned = removeAbandonedKWinScripts();
  if (file_) abandoned.push_back(file_->name());
  for (const std::string& name : abandoned) {
    calls_->call(scripting("unloadScript"), g_variant_new("(s)", name.c_str()), nullptr, answerTime,
                 [](GVariant*) {});
  }
  file_ = KWinScriptFile::write(kwinScript(g_dbus_connection_get_unique_name(calls_->bus())));
  if (!file_) return loadLater();
  calls_->call(scripting("loadScript"),
               g_variant_new("(ss)", file_->path().c_str(), file_->name().c_str()),
               G_VARIANT_TYPE("(i)"), answerTime, [this](GVariant* answer) {
                 gint32 number = -1;
                 if (answer != nullptr) g_variant_get(answer, "(i)", &number);
                 number < 0 ? loadLater() : run(number);
               });
}

void KWinLocator::run(std::int32_t number) {
  const std::string path = "/" + std::to_string(number);
  calls_->call({service, path.c_str(), "org.kde.kwin.Script", "run"}, nullptr, nullptr, answerTime,
               [this](GVariant* answer) { answer == nullptr ? loadLater() : checkLater(); });
}

void KWinLocator::loadLater() {
  if (!reports_ || !reports_->isPresent()) return;
  loading_ = attachSource(g_timeout_source_new(pause), [this] { load(); });
}

void KWinLocator::check() {
  checking_.reset();
  if (!calls_ || !file_ || loading_) return;
  calls_->call(scripting("isScriptLoaded"), g_variant_new("(s)", file_->name().c_str()),
               G_VARIANT_TYPE("(b)"), answerTime, [this](GVariant* answer) {
                 if (!reports_ || !reports_->isPresent()) return;
                 gboolean isLoaded = FALSE;
                 if (answer != nullptr) g_variant_get(answer, "(b)", &isLoaded);
                 if (answer != nullptr && isLoaded == FALSE) return load();
                 if (answer != nullptr && !reported_) startAll();
                 tell(answer == nullptr ? std::nullopt : reported_);
                 checkLater();
               });
}

// KWin 5.27 may give a script the number of another one that runs, where some were unloaded, so
// that `run` did not reach it: then it runs with all that do not yet.
void KWinLocator::startAll() {
  calls_->call(scripting("start"), nullptr, nullptr, answerTime, [](GVariant*) {});
}

// Somebody has to know of a compositor that is not answering that it does again.
void KWinLocator::checkLater() {
  if (!isWatched_ && isKnown()) {
    checking_.reset();
  } else if (!checking_) {
    checking_ = attachSource(g_timeout_source_new(pause), [this] { check(); });
  }
}

void KWinLocator::takeReport(const char* json) {
  auto windows = windowsInKWinReport(json);
  if (!windows) return;
  reported_ = std::move(windows);
  tell(reported_);
}

}  // namespace vellora
