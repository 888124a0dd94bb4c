#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/application_contract.h"
#include "contracts/music_scripting_contract.h"
#include "contracts/status_item_contract.h"
#include "contracts/system_subjects.h"
#include "platform/linux/open/open_interface.h"
#include "platform/linux/player/fake_player.h"
#include "platform/linux/player/mpris_scripting.h"
#include "platform/linux/tray/tray_host.h"

namespace vellora {
namespace {

std::unique_ptr<PlatformSubject> makePlatformOfItsOwn() {
  leaveSessionBus();
  g_unsetenv("DISPLAY");
  return std::make_unique<SystemPlatform>();
}

class LinuxApplication final : public TimerSubject {
 public:
  Application& application() override { return platform_->application(); }
  void endApplication() override { platform_.reset(); }
  bool loopUntil(const std::function<bool()>& condition) override {
    return runLoopUntil(condition, 20);
  }
  void settle() override {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
  }
  double elapsed() const override { return static_cast<double>(g_get_monotonic_time()) / 1e6; }
  void beBusy(double seconds) override { g_usleep(static_cast<gulong>(seconds * 1e6)); }

  // Sends Open, as the helper does, once the program has its name, and ends the run when that has
  // been answered.
  void open(const std::vector<std::string>& urls) override {
    asked_ = urls;
    const auto sender = bus_.connect();
    const guint watch = g_bus_watch_name_on_connection(sender.get(), OpenInterface::busName,
                                                       G_BUS_NAME_WATCHER_FLAGS_NONE, &appeared,
                                                       nullptr, this, nullptr);
    application().run();
    g_bus_unwatch_name(watch);
  }
  std::vector<std::string> urls() const override {
    return {"tessaly-overlay://x?snapshot=/Users/a%20b/%E6%96%87/Vellora/snapshot.json",
            "TESSALY-overlay:%zz?a=1&&b#%", "", "文 ü"};
  }

 private:
  static void appeared(GDBusConnection* connection, const gchar*, const gchar*, gpointer self) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& url : static_cast<LinuxApplication*>(self)->asked_) {
      g_variant_builder_add(&list, "s", url.c_str());
    }
    g_dbus_connection_call(
        connection, OpenInterface::busName, OpenInterface::objectPath, OpenInterface::interfaceName,
        OpenInterface::openMethod, g_variant_new("(as)", &list), nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
        [](GObject* source, GAsyncResult* result, gpointer subject) {
          const GVariantPtr answer(
              g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
          EXPECT_TRUE(answer);
          static_cast<LinuxApplication*>(subject)->application().terminate();
        },
        self);
  }

  PrivateBus bus_;
  std::unique_ptr<Platform> platform_ = makePlatform();
  std::vector<std::string> asked_;
};

class LinuxStatusItem final : public StatusItemSubject {
 public:
  StatusItem& item() override { return *item_; }
  std::string shownTitle() override {
    return g_variant_get_string(host_.property(name(), "Title").get(), nullptr);
  }
  std::string shownToolTip() override {
    const auto toolTip = host_.property(name(), "ToolTip");
    const gchar* text = nullptr;
    g_variant_get_child(toolTip.get(), 2, "&s", &text);
    return text;
  }
  std::vector<Entry> shownMenu() override {
    std::vector<Entry> entries;
    for (const TrayHost::Entry& entry : host_.menu(name())) {
      const bool separator = entry.type == "separator";
      entries.push_back({separator, withoutMnemonics(entry.label), entry.enabled && !separator,
                         keyOf(entry.shortcut)});
    }
    return entries;
  }
  void choose(std::size_t entry) override {
    host_.choose(name(), host_.menu(name()).at(entry).id);
    host_.menu(name());  // the event has been dealt with when a later question is answered
  }

 private:
  // Where an underscore marks the letter after it, two stand for one.
  static std::string withoutMnemonics(const std::string& label) {
    std::string text;
    for (std::size_t i = 0; i < label.size(); ++i) {
      if (label[i] == '_') ++i;
      if (i < label.size()) text += label[i];
    }
    return text;
  }
  // "[['Control', 'q']]"
  static std::string keyOf(const std::string& shortcut) {
    return shortcut.starts_with("[['Control', '") ? shortcut.substr(14, shortcut.size() - 17) : "";
  }
  const std::string& name() {
    if (name_.empty()) name_ = host_.service();
    return name_;
  }

  TrayHost host_;
  const std::unique_ptr<Platform> platform_ = makePlatform();
  const std::unique_ptr<StatusItem> item_ = platform_->makeStatusItem();
  std::string name_;
};

class LinuxMusicScripting final : public MusicScriptingSubject {
 public:
  LinuxMusicScripting() {
    FakePlayer::Setup setup;
    setup.tracks = {{"/track/0", "Sakura", {"Choir"}, "Spring"}};
    setup.refused = {"Next"};
    player_ = std::make_unique<FakePlayer>(setup);
  }
  MusicScripting& scripting() override { return scripting_; }
  ScriptRequest answeredRequest() override { return {}; }
  std::string answer() override { return "Sakura|Choir|Spring|0|playing"; }
  ScriptRequest refusedRequest() override {
    PlayerCommand next;
    next.command = MusicCommand(0, MusicCommand::Action::next, "");
    return {"", next};
  }
  std::string refusal() override { return "will not Next"; }

 private:
  PrivateBus bus_;
  std::unique_ptr<FakePlayer> player_;
  MprisScripting scripting_{nullptr, std::chrono::seconds(20)};
};

INSTANTIATE_TEST_SUITE_P(LinuxWithoutDisplayOrBus, PlatformContract,
                         testing::Values(Backend<PlatformSubject>{"Linux", &makePlatformOfItsOwn}));
VELLORA_INSTANTIATE(Linux, Clock, SystemClockSubject);
VELLORA_INSTANTIATE(Linux, Application, LinuxApplication);
VELLORA_INSTANTIATE(Linux, Timer, LinuxApplication);
VELLORA_INSTANTIATE(Linux, StatusItem, LinuxStatusItem);
VELLORA_INSTANTIATE(Linux, MusicScripting, LinuxMusicScripting);

}  // namespace
}  // namespace vellora
