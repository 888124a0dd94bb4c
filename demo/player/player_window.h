#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "platform/linux/glib/glib_ptr.h"
#include "playback/playback.h"
#include "player/lyrics_view.h"
#include "player/options.h"

namespace vellora::demo {

struct WindowDestroy {
  void operator()(GtkWidget* window) const { gtk_widget_destroy(window); }
};

// The player's one window: library, what is playing, transport, and the Lyrics view. Follows the
// playback, which must outlive it. Main thread.
class PlayerWindow {
 public:
  PlayerWindow(Playback& playback, const Geometry& geometry, bool lyrics);
  ~PlayerWindow();
  PlayerWindow(const PlayerWindow&) = delete;
  PlayerWindow& operator=(const PlayerWindow&) = delete;

  // Brings the window to the front.
  void present();
  void setLyricsShown(bool shown);
  bool lyricsShown() const;

 private:
  GtkWidget* newSidebar();
  GtkWidget* newHeader();
  GtkWidget* newTitles();
  GtkWidget* newTransport();
  GtkWidget* newPositionRow();
  void placeWindow(const Geometry& geometry);
  void changed(const Playback::Change& change);
  void showSong();
  void showStatus();
  void showPosition();
  bool keyPressed(const GdkEventKey& event);

  Playback& playback_;
  LyricsView lyrics_;

  GObjectPtr<GtkWidget> empty_;  // stands in the place of the lyrics
  std::unique_ptr<GtkWidget, WindowDestroy> window_;
  // Owned by the window.
  GtkWidget* stage_ = nullptr;
  GtkWidget* nowPlaying_ = nullptr;
  GtkWidget* album_ = nullptr;
  GtkWidget* playButton_ = nullptr;
  GtkWidget* lyricsSwitch_ = nullptr;
  GtkWidget* slider_ = nullptr;
  GtkWidget* elapsed_ = nullptr;
  GtkWidget* remaining_ = nullptr;
  std::vector<GtkWidget*> songButtons_;
  GSourcePtr timer_;
};

}  // namespace vellora::demo
