#include "player/lyrics_view.h"

#include <algorithm>
#include <utility>

#include "platform/linux/glib/event_source.h"
#include "player/widgets.h"

namespace vellora::demo {
namespace {

constexpr int rowGap = 60;      // pixels between two rows: a caption of one or two lines
constexpr int sideMargin = 20;  // pixels: captions end 22 pixels before the view's right edge

}  // namespace

LyricsView::LyricsView(std::function<void(std::size_t)> choose) : choose_(std::move(choose)) {
  scroller_.reset(
      GTK_SCROLLED_WINDOW(g_object_ref_sink(gtk_scrolled_window_new(nullptr, nullptr))));
  // No scroll bar: it would stand where captions end.
  gtk_scrolled_window_set_policy(scroller_.get(), GTK_POLICY_NEVER, GTK_POLICY_EXTERNAL);
  addStyleClass(widget(), "lyrics");
  setAccessibleName(widget(), "Lyrics");
  rows_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, rowGap);
  gtk_widget_set_margin_start(rows_, sideMargin);
  gtk_widget_set_margin_end(rows_, sideMargin);
  gtk_container_add(GTK_CONTAINER(widget()), rows_);
  g_signal_connect(rows_, "size-allocate",
                   G_CALLBACK(+[](GtkWidget*, GdkRectangle*, gpointer self) {
                     static_cast<LyricsView*>(self)->layoutChanged();
                   }),
                   this);
  g_signal_connect(widget(), "scroll-event",
                   G_CALLBACK(+[](GtkWidget*, GdkEvent*, gpointer self) -> gboolean {
                     // The listener's own scrolling holds until the next line.
                     auto* view = static_cast<LyricsView*>(self);
                     view->scroll_.jumpTo(view->scroll_.value(view->now()));
                     return FALSE;
                   }),
                   this);
  gtk_widget_show_all(widget());
}

LyricsView::~LyricsView() {
  if (tick_ != 0) gtk_widget_remove_tick_callback(widget(), tick_);
  g_signal_handlers_disconnect_by_data(rows_, this);
  g_signal_handlers_disconnect_by_data(scroller_.get(), this);
  for (GtkWidget* button : buttons_) g_signal_handlers_disconnect_by_data(button, this);
}

void LyricsView::show(const Song& song) {
  for (GtkWidget* button : buttons_) gtk_widget_destroy(button);
  buttons_.clear();
  current_.reset();
  for (std::size_t line = 0; line < song.lines.size(); ++line) addRow(song, line);
  gtk_widget_show_all(rows_);
  scroll_.jumpTo(-1);  // no row's place, so that the layout to come puts the first row into its own
}

void LyricsView::addRow(const Song& song, std::size_t line) {
  const std::string& text = song.lines[line].text;
  GtkWidget* label = gtk_label_new(text.c_str());
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_widget_set_halign(label, GTK_ALIGN_START);
  setLabelLanguage(label, song.language);
  GtkWidget* button = gtk_button_new();
  gtk_container_add(GTK_CONTAINER(button), label);
  gtk_widget_set_focus_on_click(button, FALSE);
  setAccessibleName(button, text);
  g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, gpointer self) {
                     static_cast<LyricsView*>(self)->rowClicked(clicked);
                   }),
                   this);
  gtk_box_pack_start(GTK_BOX(rows_), button, FALSE, FALSE, 0);
  buttons_.push_back(button);
}

void LyricsView::rowClicked(GtkButton* button) {
  const auto found = std::ranges::find(buttons_, GTK_WIDGET(button));
  if (found != buttons_.end()) choose_(static_cast<std::size_t>(found - buttons_.begin()));
}

void LyricsView::setCurrent(std::optional<std::size_t> line) {
  if (line == current_) return;
  if (current_) setStyleClass(buttons_[*current_], "current", false);
  current_ = line;
  if (current_) setStyleClass(buttons_[*current_], "current", true);
  if (mustPlace_) return;
  scroll_.jumpTo(gtk_adjustment_get_value(gtk_scrolled_window_get_vadjustment(scroller_.get())));
  scroll_.glideTo(targetValue(), now());
  glide();
}

double LyricsView::now() const { return static_cast<double>(g_get_monotonic_time()) / 1e6; }

double LyricsView::targetValue() const {
  if (buttons_.empty()) return 0;
  GtkAllocation row;
  gtk_widget_get_allocation(buttons_[current_.value_or(0)], &row);
  return Scroll::valueFor(
      row.y, gtk_adjustment_get_page_size(gtk_scrolled_window_get_vadjustment(scroller_.get())));
}

// The rows have been laid out. When the viewport has another height, the margins are made such that
// the first and the last row can reach the reading line. Whatever moved the sung row, it is put
// back on the reading line at the next frame.
void LyricsView::layoutChanged() {
  const double height =
      gtk_adjustment_get_page_size(gtk_scrolled_window_get_vadjustment(scroller_.get()));
  if (height != height_ && height > 1) {
    height_ = height;
    // Not from inside the layout that told of the change.
    marginsLater_ = attachSource(
        g_idle_source_new(),
        [this] {
          marginsLater_.reset();
          setMargins();
        },
        G_PRIORITY_DEFAULT_IDLE);
  }
  mustPlace_ = true;
  glide();
}

void LyricsView::setMargins() {
  gtk_widget_set_margin_top(rows_, static_cast<int>(height_ * Scroll::readingLine));
  gtk_widget_set_margin_bottom(rows_, static_cast<int>(height_ * (1 - Scroll::readingLine)));
}

void LyricsView::glide() {
  if (tick_ != 0) return;
  tick_ = gtk_widget_add_tick_callback(
      widget(),
      +[](GtkWidget*, GdkFrameClock*, gpointer self) -> gboolean {
        return static_cast<LyricsView*>(self)->step() ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
      },
      this, nullptr);
}

bool LyricsView::step() {
  const double time = now();
  if (mustPlace_ && targetValue() != scroll_.target()) scroll_.jumpTo(targetValue());
  mustPlace_ = false;
  gtk_adjustment_set_value(gtk_scrolled_window_get_vadjustment(scroller_.get()),
                           scroll_.value(time));
  if (scroll_.isGliding(time)) return true;
  tick_ = 0;
  return false;
}

}  // namespace vellora::demo
