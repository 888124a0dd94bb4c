#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

#include "library/song.h"
#include "platform/linux/glib/glib_ptr.h"
#include "playback/scroll.h"

namespace vellora::demo {

// The Lyrics view: a scroll area that assistive programs know as "Lyrics", with one button for each
// line of the song. The sung line is bright, and its top glides to the reading line. Between the
// rows there is room for a caption. Main thread.
class LyricsView {
 public:
  // `choose` is told the line that was clicked.
  explicit LyricsView(std::function<void(std::size_t)> choose);
  ~LyricsView();
  LyricsView(const LyricsView&) = delete;
  LyricsView& operator=(const LyricsView&) = delete;

  // Kept alive by this object, so that it can be taken out of the window and put back.
  GtkWidget* widget() const { return GTK_WIDGET(scroller_.get()); }

  void show(const Song& song);
  // Nothing before the first line, which then waits on the reading line.
  void setCurrent(std::optional<std::size_t> line);

 private:
  void addRow(const Song& song, std::size_t line);
  void rowClicked(GtkButton* button);
  void layoutChanged();
  void setMargins();
  void glide();
  bool step();
  double targetValue() const;
  double now() const;

  std::function<void(std::size_t)> choose_;
  GObjectPtr<GtkScrolledWindow> scroller_;
  GtkWidget* rows_ = nullptr;        // in scroller_
  std::vector<GtkWidget*> buttons_;  // in rows_
  std::optional<std::size_t> current_;
  Scroll scroll_;
  guint tick_ = 0;         // the frame clock's callback while gliding
  bool mustPlace_ = true;  // the layout has changed
  GSourcePtr marginsLater_;
  double height_ = 0;  // of the viewport, for which the margins are set
};

}  // namespace vellora::demo
