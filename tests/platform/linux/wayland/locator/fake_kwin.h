#pragma once

#include <string>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// KWin's scripting on a connection of its own in the test's loop: takes scripts, runs none, and
// reports what the test says to whoever loaded one. Main thread.
class FakeKWin {
 public:
  explicit FakeKWin(GObjectPtr<GDBusConnection> bus);
  ~FakeKWin();
  FakeKWin(const FakeKWin&) = delete;
  FakeKWin& operator=(const FakeKWin&) = delete;

  // Sends the report to the one who loaded the last script.
  void report(const std::string& json) const { report(json, bus_.get()); }
  // From another connection.
  void report(const std::string& json, GDBusConnection* from) const;

  bool answers = true;             // whether calls are answered at all
  bool takesScripts = true;        // whether loadScript succeeds
  std::vector<std::string> calls;  // such as "loadScript vellora-kwin-12"
  std::vector<std::string> loaded;
  std::string script;  // the last one's text
  std::string path;    // and its file
  int fileMode = 0;
  int runs = 0;
  int starts = 0;  // of all scripts that do not run

 private:
  static void called(GDBusConnection* bus, const gchar* sender, const gchar* path,
                     const gchar* interface, const gchar* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self) noexcept;
  GVariant* carryOut(const std::string& method, GVariant* arguments);

  GObjectPtr<GDBusConnection> bus_;
  std::string loader_;
  std::vector<guint> objects_;
  guint name_ = 0;
};

// A window as the script reports it.
std::string kwinWindow(int process, const std::string& name, bool isActive,
                       const std::string& frame, const std::string& buffer,
                       const std::string& more = R"("x11":false,"visible":true,"order":1)");

}  // namespace vellora
