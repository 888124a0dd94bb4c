#include "player/player_window.h"

#include <algorithm>
#include <cmath>

#include "platform/linux/glib/event_source.h"
#include "player/present_window.h"
#include "player/widgets.h"

namespace vellora::demo {
namespace {

constexpr const char* nowPlayingId = "Music.nowPlaying.title-Music.nowPlaying.subtitle";
constexpr guint refreshInterval = 100;  // milliseconds
constexpr double keyStep = 5;           // seconds
constexpr int sidebarWidth = 216;       // pixels
constexpr int headerMargin = 22;        // pixels: in line with the captions' plates

std::string timeText(double seconds) {
  const auto whole = static_cast<int>(seconds);
  const int rest = whole % 60;
  return std::to_string(whole / 60) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
}

}  // namespace

PlayerWindow::PlayerWindow(Playback& playback, const Geometry& geometry, bool lyrics)
    : playback_(playback),
      lyrics_([this](std::size_t line) {
        playback_.setPosition(playback_.song().lines[line].time);
        playback_.play();
      }),
      window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
  empty_.reset(GTK_WIDGET(g_object_ref_sink(gtk_label_new("♪"))));
  addStyleClass(empty_.get(), "empty");

  GtkWidget* columns = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  GtkWidget* main = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  stage_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_pack_start(GTK_BOX(main), newHeader(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(main), stage_, TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(columns), newSidebar(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(columns), main, TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(window_.get()), columns);

  gtk_window_set_title(GTK_WINDOW(window_.get()), "Music");
  g_signal_connect(window_.get(), "delete-event",
                   G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer) -> gboolean {
                     gtk_main_quit();
                     return TRUE;  // the window goes with its owner
                   }),
                   nullptr);
  g_signal_connect(window_.get(), "key-press-event",
                   G_CALLBACK(+[](GtkWidget*, GdkEventKey* event, gpointer self) -> gboolean {
                     return static_cast<PlayerWindow*>(self)->keyPressed(*event);
                   }),
                   this);
  playback_.listen([this](const Playback::Change& change) { changed(change); });
  timer_ = attachSource(g_timeout_source_new(refreshInterval), [this] {
    playback_.advance();
    showPosition();
  });
  showSong();
  showStatus();
  setLyricsShown(lyrics);
  placeWindow(geometry);
}

// What this object owns beside the window leaves it first, so that it is not destroyed with it.
PlayerWindow::~PlayerWindow() {
  for (GtkWidget* view : {lyrics_.widget(), empty_.get()}) {
    if (gtk_widget_get_parent(view) != nullptr) gtk_container_remove(GTK_CONTAINER(stage_), view);
  }
}

void PlayerWindow::placeWindow(const Geometry& geometry) {
  GtkWindow* window = GTK_WINDOW(window_.get());
  gtk_window_set_default_size(window, geometry.width, geometry.height);
  if (geometry.x && geometry.y) {
    gtk_window_move(window, *geometry.x, *geometry.y);
  } else {
    gtk_window_set_position(window, GTK_WIN_POS_CENTER);
  }
  gtk_widget_show_all(window_.get());
}

GtkWidget* PlayerWindow::newSidebar() {
  GtkWidget* list = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
  gtk_container_set_border_width(GTK_CONTAINER(list), 12);
  GtkWidget* heading = newLabel("LIBRARY", "heading");
  gtk_widget_set_margin_start(heading, 10);
  gtk_widget_set_margin_bottom(heading, 6);
  gtk_box_pack_start(GTK_BOX(list), heading, FALSE, FALSE, 0);
  const GObjectPtr<GtkSizeGroup> equallyHigh(gtk_size_group_new(GTK_SIZE_GROUP_VERTICAL));
  for (const Song& song : playback_.songs()) {
    GtkWidget* labels = gtk_box_new(GTK_ORIENTATION_VERTICAL, 1);
    gtk_widget_set_valign(labels, GTK_ALIGN_CENTER);
    GtkWidget* title = newLabel(song.title, "song-title");
    setLabelLanguage(title, song.language);
    gtk_container_add(GTK_CONTAINER(labels), title);
    gtk_container_add(GTK_CONTAINER(labels), newLabel(song.artist, "song-artist"));
    GtkWidget* button = gtk_button_new();
    gtk_container_add(GTK_CONTAINER(button), labels);
    gtk_widget_set_focus_on_click(button, FALSE);
    setAccessibleName(button, song.title);
    g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkWidget* clicked, gpointer self) {
                       auto* window = static_cast<PlayerWindow*>(self);
                       const auto& buttons = window->songButtons_;
                       const auto found = std::ranges::find(buttons, clicked);
                       window->playback_.goTo(static_cast<std::size_t>(found - buttons.begin()));
                     }),
                     this);
    gtk_size_group_add_widget(equallyHigh.get(), button);
    gtk_box_pack_start(GTK_BOX(list), button, FALSE, FALSE, 0);
    songButtons_.push_back(button);
  }
  GtkWidget* scroller = gtk_scrolled_window_new(nullptr, nullptr);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER,
                                 GTK_POLICY_AUTOMATIC);
  gtk_container_add(GTK_CONTAINER(scroller), list);
  gtk_widget_set_size_request(scroller, sidebarWidth, -1);
  addStyleClass(scroller, "sidebar");
  setAccessibleName(scroller, "Library");
  return scroller;
}

GtkWidget* PlayerWindow::newHeader() {
  GtkWidget* header = gtk_box_new(GTK_ORIENTATION_VERTICAL, 4);
  addStyleClass(header, "header");
  GtkWidget* top = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 14);
  gtk_widget_set_margin_start(top, headerMargin);
  gtk_widget_set_margin_end(top, headerMargin);
  gtk_widget_set_margin_top(top, 10);
  // As high as titles of the tallest script, so that the lyrics begin at one height with every
  // song.
  gtk_widget_set_size_request(top, -1, 64);
  GtkWidget* artwork = gtk_label_new("♫");
  gtk_widget_set_size_request(artwork, 52, 52);
  gtk_widget_set_valign(artwork, GTK_ALIGN_CENTER);
  addStyleClass(artwork, "artwork");
  gtk_box_pack_start(GTK_BOX(top), artwork, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(top), newTitles(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(top), newTransport(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(header), top, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(header), newPositionRow(), FALSE, FALSE, 0);
  return header;
}

GtkWidget* PlayerWindow::newTitles() {
  GtkWidget* titles = gtk_box_new(GTK_ORIENTATION_VERTICAL, 3);
  gtk_widget_set_valign(titles, GTK_ALIGN_CENTER);
  nowPlaying_ = newLabel("", "now-playing");
  setAccessibleId(nowPlaying_, nowPlayingId);
  album_ = newLabel("", "album");
  gtk_container_add(GTK_CONTAINER(titles), nowPlaying_);
  gtk_container_add(GTK_CONTAINER(titles), album_);
  return titles;
}

GtkWidget* PlayerWindow::newTransport() {
  GtkWidget* transport = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4);
  GtkWidget* previous = newTransportButton(TransportIcon::previous, "Previous");
  playButton_ = newTransportButton(TransportIcon::play, "Play");
  GtkWidget* next = newTransportButton(TransportIcon::next, "Next");
  const auto connect = [this](GtkWidget* button, void (*action)(GtkWidget*, gpointer)) {
    g_signal_connect(button, "clicked", G_CALLBACK(action), this);
  };
  connect(previous, [](GtkWidget*, gpointer self) {
    static_cast<PlayerWindow*>(self)->playback_.previous();
  });
  connect(playButton_, [](GtkWidget*, gpointer self) {
    static_cast<PlayerWindow*>(self)->playback_.playPause();
  });
  connect(next,
          [](GtkWidget*, gpointer self) { static_cast<PlayerWindow*>(self)->playback_.next(); });
  // It says what a press does. Not named like the view that it shows, so that the view's name is
  // the only one of its kind.
  lyricsSwitch_ = gtk_button_new();
  gtk_widget_set_focus_on_click(lyricsSwitch_, FALSE);
  gtk_widget_set_valign(lyricsSwitch_, GTK_ALIGN_CENTER);
  gtk_widget_set_margin_start(lyricsSwitch_, 10);
  addStyleClass(lyricsSwitch_, "lyrics-switch");
  connect(lyricsSwitch_, [](GtkWidget*, gpointer self) {
    auto* const window = static_cast<PlayerWindow*>(self);
    window->setLyricsShown(!window->lyricsShown());
  });
  for (GtkWidget* button : {previous, playButton_, next, lyricsSwitch_}) {
    gtk_box_pack_start(GTK_BOX(transport), button, FALSE, FALSE, 0);
  }
  return transport;
}

GtkWidget* PlayerWindow::newPositionRow() {
  GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 8);
  gtk_widget_set_margin_start(row, headerMargin);
  gtk_widget_set_margin_end(row, headerMargin);
  gtk_widget_set_margin_bottom(row, 8);
  elapsed_ = newLabel("", "time");
  remaining_ = newLabel("", "time");
  for (GtkWidget* label : {elapsed_, remaining_}) gtk_label_set_width_chars(GTK_LABEL(label), 5);
  gtk_label_set_xalign(GTK_LABEL(remaining_), 1);
  slider_ = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 1, 1);
  gtk_scale_set_draw_value(GTK_SCALE(slider_), FALSE);
  gtk_widget_set_can_focus(slider_, FALSE);
  setAccessibleName(slider_, "Position");
  g_signal_connect(slider_, "change-value",
                   G_CALLBACK(+[](GtkRange*, GtkScrollType, gdouble value, gpointer self) {
                     Playback& playback = static_cast<PlayerWindow*>(self)->playback_;
                     playback.setPosition(std::clamp(value, 0.0, playback.song().length));
                     return TRUE;
                   }),
                   this);
  gtk_box_pack_start(GTK_BOX(row), elapsed_, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(row), slider_, TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(row), remaining_, FALSE, FALSE, 0);
  return row;
}

void PlayerWindow::present() { presentWindow(window_.get()); }

// The view that is not shown is taken out of the window altogether: a hidden one would still be
// listed to assistive programs.
void PlayerWindow::setLyricsShown(bool shown) {
  GtkWidget* wanted = shown ? lyrics_.widget() : empty_.get();
  GtkWidget* other = shown ? empty_.get() : lyrics_.widget();
  if (gtk_widget_get_parent(wanted) != nullptr) return;
  if (gtk_widget_get_parent(other) != nullptr) gtk_container_remove(GTK_CONTAINER(stage_), other);
  gtk_box_pack_start(GTK_BOX(stage_), wanted, TRUE, TRUE, 0);
  gtk_widget_show_all(wanted);
  gtk_button_set_label(GTK_BUTTON(lyricsSwitch_), shown ? "Hide lyrics" : "Show lyrics");
  setStyleClass(lyricsSwitch_, "on", shown);
}

bool PlayerWindow::lyricsShown() const {
  return gtk_widget_get_parent(lyrics_.widget()) != nullptr;
}

void PlayerWindow::changed(const Playback::Change& change) {
  if (change.track) showSong();
  if (change.status) showStatus();
  showPosition();
}

void PlayerWindow::showSong() {
  const Song& song = playback_.song();
  const std::string nowPlaying = song.title + " — " + song.artist;
  gtk_label_set_text(GTK_LABEL(nowPlaying_), nowPlaying.c_str());
  setLabelLanguage(nowPlaying_, song.language);
  setAccessibleName(nowPlaying_, nowPlaying);
  setAccessibleDescription(nowPlaying_, nowPlaying);
  gtk_label_set_text(GTK_LABEL(album_), song.album.c_str());
  gtk_range_set_range(GTK_RANGE(slider_), 0, song.length);
  for (std::size_t i = 0; i < songButtons_.size(); ++i) {
    setStyleClass(songButtons_[i], "current", i == playback_.index());
  }
  lyrics_.show(song);
  showPosition();
}

void PlayerWindow::showStatus() {
  const bool playing = playback_.status() == Playback::Status::playing;
  setTransportIcon(playButton_, playing ? TransportIcon::pause : TransportIcon::play);
  setAccessibleName(playButton_, playing ? "Pause" : "Play");
}

void PlayerWindow::showPosition() {
  const double position = playback_.position();
  const std::string elapsed = timeText(position);
  // Once a second is enough for texts and slider: assistive programs hear of every change.
  if (elapsed != gtk_label_get_text(GTK_LABEL(elapsed_))) {
    gtk_label_set_text(GTK_LABEL(elapsed_), elapsed.c_str());
    const double remaining = std::ceil(playback_.song().length - position);
    gtk_label_set_text(GTK_LABEL(remaining_), std::string("−").append(timeText(remaining)).c_str());
  }
  if (std::abs(gtk_range_get_value(GTK_RANGE(slider_)) - position) >= 0.5) {
    gtk_range_set_value(GTK_RANGE(slider_), position);
  }
  lyrics_.setCurrent(lineAt(playback_.song(), position));
}

bool PlayerWindow::keyPressed(const GdkEventKey& event) {
  if ((event.state & GDK_CONTROL_MASK) != 0) {
    if (event.keyval != GDK_KEY_q) return false;
    gtk_main_quit();
    return true;
  }
  switch (event.keyval) {
    case GDK_KEY_space:
      playback_.playPause();
      return true;
    case GDK_KEY_Left:
      playback_.seek(-keyStep);
      return true;
    case GDK_KEY_Right:
      playback_.seek(keyStep);
      return true;
    case GDK_KEY_Up:
      playback_.previous();
      return true;
    case GDK_KEY_Down:
      playback_.next();
      return true;
    case GDK_KEY_l:
      setLyricsShown(!lyricsShown());
      return true;
    default:
      return false;
  }
}

}  // namespace vellora::demo
