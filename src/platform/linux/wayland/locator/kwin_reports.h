#pragma once

#include <functional>
#include <string>

#include "platform/linux/glib/session_bus.h"

namespace vellora {

// KWin's coming and going on the bus, and what its script reports there. Reports of anybody else
// are refused. Main thread.
class KWinReports {
 public:
  struct Listener {
    std::function<void()> appeared;  // also at the start, and when another one takes its place
    std::function<void()> vanished;  // also at the start, where it is not there
    std::function<void(const char* json)> reported;
  };

  KWinReports(SessionBus bus, Listener listener);
  ~KWinReports();
  KWinReports(const KWinReports&) = delete;
  KWinReports& operator=(const KWinReports&) = delete;

  bool isPresent() const { return !owner_.empty(); }

 private:
  static void appeared(GDBusConnection* bus, const gchar* name, const gchar* owner,
                       gpointer self) noexcept;
  static void vanished(GDBusConnection* bus, const gchar* name, gpointer self) noexcept;
  static void called(GDBusConnection* bus, const gchar* sender, const gchar* path,
                     const gchar* interface, const gchar* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self) noexcept;

  const SessionBus bus_;
  const Listener listener_;
  std::string owner_;  // KWin's connection; empty: it is not there
  guint object_ = 0;
  guint name_ = 0;
};

}  // namespace vellora
