#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>
#include <vterm.h>

namespace vellora::companion {

// A program in a pseudo-terminal that libvterm stands behind: what the program writes is shown on a
// screen that a test can read. One thread.
class Terminal {
 public:
  Terminal(std::vector<std::string> arguments, int rows, int columns);
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  // Ends the program.
  ~Terminal();

  void type(const std::string& keys) const;
  void resize(int rows, int columns);
  // The terminal goes away, as when its window is closed.
  void hangUp();

  // Lets the program and the screen go on until the condition holds; 10 s at most.
  bool waitFor(const std::function<bool()>& condition);

  // The screen's rows, trailing blanks left out, each with a line feed.
  std::string screen() const;
  std::string row(int number) const;
  bool shows(const std::string& text) const { return screen().find(text) != std::string::npos; }
  // Whether the program has the screen for itself (the alternate one).
  bool taken() const { return alternate_; }

  pid_t pid() const { return child_; }
  std::optional<int> exitStatus();

 private:
  void pump(int milliseconds);
  static int setProperty(VTermProp property, VTermValue* value, void* user);

  struct FreeVTerm {
    void operator()(VTerm* terminal) const { vterm_free(terminal); }
  };
  std::unique_ptr<VTerm, FreeVTerm> terminal_;
  VTermScreen* view_ = nullptr;
  VTermScreenCallbacks callbacks_{};
  int master_ = -1;
  pid_t child_ = -1;
  std::optional<int> status_;
  bool alternate_ = false;
};

}  // namespace vellora::companion
