#include "companion/terminal.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/utf8.h"

namespace vellora::companion {

Terminal::Terminal(std::vector<std::string> arguments, int rows, int columns)
    : terminal_(vterm_new(rows, columns)) {
  vterm_set_utf8(terminal_.get(), 1);
  view_ = vterm_obtain_screen(terminal_.get());
  callbacks_.settermprop = setProperty;
  vterm_screen_set_callbacks(view_, &callbacks_, this);
  vterm_screen_enable_altscreen(view_, 1);
  vterm_screen_reset(view_, 1);

  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(columns);
  child_ = forkpty(&master_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error("no pseudo-terminal");
  if (child_ == 0) {
    setenv("TERM", "xterm", 1);
    execv(argv[0], argv.data());
    _exit(127);
  }
}

Terminal::~Terminal() {
  if (master_ >= 0) close(master_);
  if (exitStatus()) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

int Terminal::setProperty(VTermProp property, VTermValue* value, void* user) {
  if (property == VTERM_PROP_ALTSCREEN) static_cast<Terminal*>(user)->alternate_ = value->boolean;
  return 1;
}

void Terminal::type(const std::string& keys) const {
  if (write(master_, keys.data(), keys.size()) < 0) throw std::runtime_error("cannot type");
}

void Terminal::resize(int rows, int columns) {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(columns);
  // libvterm 0.1 does not survive a screen of a cell or two; the program sees the size all the
  // same.
  vterm_set_size(terminal_.get(), std::max(rows, 4), std::max(columns, 10));
  ioctl(master_, TIOCSWINSZ, &size);
}

void Terminal::hangUp() {
  close(master_);
  master_ = -1;
}

void Terminal::pump(int milliseconds) {
  pollfd output{master_, POLLIN, 0};
  if (poll(&output, 1, milliseconds) <= 0 || (output.revents & POLLIN) == 0) return;
  std::array<char, 4096> bytes{};
  const ssize_t count = read(master_, bytes.data(), bytes.size());
  if (count > 0) vterm_input_write(terminal_.get(), bytes.data(), static_cast<std::size_t>(count));
}

bool Terminal::waitFor(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    pump(20);
  }
  return true;
}

std::string Terminal::row(int number) const {
  int rows = 0;
  int columns = 0;
  vterm_get_size(terminal_.get(), &rows, &columns);
  std::string text;
  for (VTermPos place{number, 0}; place.col < columns; ++place.col) {
    VTermScreenCell cell{};
    vterm_screen_get_cell(view_, place, &cell);
    if (cell.chars[0] == static_cast<uint32_t>(-1)) continue;  // the second half of a wide one
    if (cell.chars[0] == 0) text.push_back(' ');
    for (const uint32_t character : cell.chars) {
      if (character == 0) break;
      appendCharacter(text, static_cast<char32_t>(character));
    }
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string Terminal::screen() const {
  int rows = 0;
  int columns = 0;
  vterm_get_size(terminal_.get(), &rows, &columns);
  std::string text;
  for (int i = 0; i < rows; ++i) text += row(i) + "\n";
  return text;
}

std::optional<int> Terminal::exitStatus() {
  int waited = 0;
  if (!status_ && waitpid(child_, &waited, WNOHANG) == child_) {
    status_ = WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
  }
  return status_;
}

}  // namespace vellora::companion
