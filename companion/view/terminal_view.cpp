#include "companion/view/terminal_view.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include <curses.h>
#include <langinfo.h>
#include <poll.h>
#include <unistd.h>

#include "companion/view/screen.h"

namespace vellora::companion {
namespace {

constexpr int mostKeys =
    32;  // taken at once, so that a held key does not keep the view from showing

struct DeleteScreen {
  void operator()(SCREEN* screen) const {
    endwin();
    delscreen(screen);
  }
};
using ScreenPtr = std::unique_ptr<SCREEN, DeleteScreen>;

// curses reads and writes characters as the locale says. Where that cannot, as in a bare container,
// UTF-8 is the best guess for a terminal of today.
void setCharacters() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0) return;
  for (const char* name : {"C.UTF-8", "en_US.UTF-8"}) {
    if (std::setlocale(LC_CTYPE, name) != nullptr) return;
  }
}

attr_t attributesOf(Style style) {
  switch (style) {
    case Style::strong:
      return A_BOLD;
    case Style::faint:
      return A_DIM;
    case Style::plain:
      break;
  }
  return A_NORMAL;
}

bool terminalIsGone() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, 0) > 0 && (input.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

class TerminalView final : public View {
 public:
  explicit TerminalView(ScreenPtr screen) : screen_(std::move(screen)) {
    set_term(screen_.get());
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    set_escdelay(25);
    curs_set(0);
  }

  void show(const ViewState& state) override {
    int rows = 0;
    int columns = 0;
    getmaxyx(stdscr, rows, columns);
    // The last column stays free: a character there makes some terminals go on to the next row.
    std::vector<ScreenLine> lines = screenOf(state, columns - 1, rows);
    if (lines == shown_ && rows == rows_ && columns == columns_) return;
    shown_ = std::move(lines);
    rows_ = rows;
    columns_ = columns;
    erase();
    int row = 0;
    for (const ScreenLine& line : shown_) {
      attr_set(attributesOf(line.style), 0, nullptr);
      mvaddstr(row++, 0, line.text.c_str());
    }
    refresh();
  }

  // The place in the song is told in whole seconds.
  double lasts(const ViewState& state) const override {
    if (more_) return 0;
    const double line = untilNextLine(state);
    if (!state.track || !state.track->playing) return line;
    const double second = 1 - (state.position - std::floor(state.position));
    return std::min(line, std::max(second, shortestWait));
  }

  int input() const override { return STDIN_FILENO; }

  std::vector<Wish> take() override {
    std::vector<Wish> wishes;
    more_ = true;
    for (int taken = 0; taken < mostKeys; ++taken) {
      const int key = getch();
      if (key == ERR) {
        more_ = false;
        break;
      }
      if (const auto wish = wishOf(key)) wishes.push_back(*wish);
    }
    if (terminalIsGone()) wishes.push_back(Wish::quit);
    return wishes;
  }

 private:
  ScreenPtr screen_;
  std::vector<ScreenLine> shown_;
  int rows_ = 0;
  int columns_ = 0;
  bool more_ = false;  // keys that wait to be taken
};

}  // namespace

std::optional<Wish> wishOf(int key) {
  switch (key) {
    case 'q':
    case 'Q':
      return Wish::quit;
    case ' ':
      return Wish::playPause;
    case 'n':
      return Wish::next;
    case 'p':
      return Wish::previous;
    case KEY_LEFT:
      return Wish::back;
    case KEY_RIGHT:
      return Wish::forward;
    case KEY_UP:
      return Wish::captionsUp;
    case KEY_DOWN:
      return Wish::captionsDown;
    case '+':
    case '=':
      return Wish::larger;
    case '-':
      return Wish::smaller;
    case 'c':
      return Wish::toggle;
    case '[':
      return Wish::lyricsEarlier;
    case ']':
      return Wish::lyricsLater;
    case 'f':
      return Wish::nextLyrics;
    case 'F':
      return Wish::previousLyrics;
    case 't':
      return Wish::nextTranslation;
    case 'T':
      return Wish::previousTranslation;
    default:
      return std::nullopt;
  }
}

std::unique_ptr<View> makeTerminalView() {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) return nullptr;
  setCharacters();
  // Unlike initscr, newterm says when a terminal is unknown instead of ending the process.
  ScreenPtr screen(newterm(nullptr, stdout, stdin));
  if (!screen) return nullptr;
  return std::make_unique<TerminalView>(std::move(screen));
}

}  // namespace vellora::companion
