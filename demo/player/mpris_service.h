#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include <gio/gio.h>

#include "platform/linux/glib/glib_ptr.h"
#include "playback/playback.h"

namespace vellora::demo {

// The player on the session bus, after the MPRIS D-Bus Interface Specification 2.2: root, Player
// and TrackList. The name is org.mpris.MediaPlayer2.vellora_demo_player, with ".instance" and the
// process's number after it where another player already has it. Without a session bus it does
// nothing. Main thread; the playback must outlive it.
class MprisService {
 public:
  struct Actions {
    std::function<void()> raise;
    std::function<void()> quit;
  };

  MprisService(Playback& playback, Actions actions);
  ~MprisService();
  MprisService(const MprisService&) = delete;
  MprisService& operator=(const MprisService&) = delete;

 private:
  static void busAcquired(GDBusConnection* connection, const gchar* name, gpointer self);
  static void nameLost(GDBusConnection* connection, const gchar* name, gpointer self);
  static void methodCalled(GDBusConnection*, const gchar* sender, const gchar* path,
                           const gchar* interface, const gchar* method, GVariant* parameters,
                           GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* propertyRead(GDBusConnection*, const gchar* sender, const gchar* path,
                                const gchar* interface, const gchar* name, GError** error,
                                gpointer self);
  static gboolean propertyWritten(GDBusConnection*, const gchar* sender, const gchar* path,
                                  const gchar* interface, const gchar* name, GVariant* value,
                                  GError** error, gpointer self);

  // Each says whether it knows the method; the answer is then given.
  bool callRoot(std::string_view method, GDBusMethodInvocation* invocation);
  bool callPlayer(std::string_view method, GVariant* parameters, GDBusMethodInvocation* invocation);
  bool callTrackList(std::string_view method, GVariant* parameters,
                     GDBusMethodInvocation* invocation);
  void playbackChanged(const Playback::Change& change);
  void emit(const char* interface, const char* signal, GVariant* parameters);

  Playback& playback_;
  Actions actions_;
  GNodeInfoPtr interfaces_;
  GObjectPtr<GDBusConnection> connection_;
  std::vector<guint> registrations_;
  guint name_ = 0;          // the plain name's watch
  guint instanceName_ = 0;  // of the name with the process's number, if need be
};

}  // namespace vellora::demo
