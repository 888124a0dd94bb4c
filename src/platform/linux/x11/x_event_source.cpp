#include "platform/linux/x11/x_event_source.h"

#include <glib-unix.h>

#include "platform/linux/x11/x_session.h"

namespace vellora {
namespace {

// GLib allocates the structure, its own part first.
struct SourceData {
  GSource base;
  XSession* session;
  gpointer watchedFd;
};

SourceData& data(GSource* source) { return *reinterpret_cast<SourceData*>(source); }

gboolean prepare(GSource* source, gint* timeout) {
  *timeout = -1;
  return data(source).session->prepareToWait() ? TRUE : FALSE;
}

gboolean check(GSource* source) {
  return g_source_query_unix_fd(source, data(source).watchedFd) != 0 ||
                 data(source).session->prepareToWait()
             ? TRUE
             : FALSE;
}

gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
  data(source).session->dispatch();
  return G_SOURCE_CONTINUE;
}

GSourceFuncs functions{prepare, check, dispatch, nullptr, nullptr, nullptr};

}  // namespace

XEventSource::XEventSource(XSession& session)
    : source_(g_source_new(&functions, sizeof(SourceData))) {
  data(source_.get()).session = &session;
  data(source_.get()).watchedFd = g_source_add_unix_fd(
      source_.get(), session.fd(), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR));
  g_source_set_name(source_.get(), "X events");
  g_source_attach(source_.get(), nullptr);
}

}  // namespace vellora
