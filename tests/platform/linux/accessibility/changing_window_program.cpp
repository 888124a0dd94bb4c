// A player's window that changes when it is told. Each line of its input is the name of an
// operation and a number for its choices; it answers "done" when it is idle again, or "unknown".
// The line "list" has it print each operation's kind and name, and "end". It ends with its input.
#include <charconv>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include "platform/linux/accessibility/changing_window.h"

namespace {

using vellora::ChangingWindow;
using vellora::WindowOperation;

struct Program {
  ChangingWindow window;
  std::vector<WindowOperation> operations;
  std::string input;
};

void say(const char* line) {
  std::printf("%s\n", line);
  std::fflush(stdout);
}

void sayWhenIdle(const char* line) {
  g_idle_add_full(
      G_PRIORITY_LOW,
      [](gpointer text) -> gboolean {
        say(static_cast<const char*>(text));
        return G_SOURCE_REMOVE;
      },
      const_cast<char*>(line), nullptr);
}

void list(const Program& program) {
  for (const WindowOperation& operation : program.operations) {
    const char* kind = operation.kind == WindowOperation::Kind::signalled     ? "signalled"
                       : operation.kind == WindowOperation::Kind::unsignalled ? "unsignalled"
                                                                              : "unseen";
    std::printf("%s %s\n", kind, operation.name);
  }
  say("end");
}

void obey(Program& program, std::string_view line) {
  if (line == "list") return list(program);
  const std::size_t space = line.find(' ');
  const std::string_view name = line.substr(0, space);
  unsigned seed = 0;
  if (space != std::string_view::npos) {
    std::from_chars(line.data() + space + 1, line.data() + line.size(), seed);
  }
  std::mt19937 random(seed);
  for (const WindowOperation& operation : program.operations) {
    if (name != operation.name) continue;
    operation.apply(program.window, random);
    return sayWhenIdle("done");
  }
  say("unknown");
}

gboolean readInput(gint input, GIOCondition, gpointer data) {
  Program& program = *static_cast<Program*>(data);
  char bytes[256];
  const ssize_t count = ::read(input, bytes, sizeof(bytes));
  if (count <= 0) {
    gtk_main_quit();
    return G_SOURCE_REMOVE;
  }
  program.input.append(bytes, static_cast<std::size_t>(count));
  for (std::size_t end = program.input.find('\n'); end != std::string::npos;
       end = program.input.find('\n')) {
    obey(program, std::string_view(program.input).substr(0, end));
    program.input.erase(0, end + 1);
  }
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main(int argc, char** argv) {
  g_set_prgname("changing-window");
  gtk_init(&argc, &argv);
  g_object_set(gtk_settings_get_default(), "gtk-enable-animations", FALSE, nullptr);
  Program program{.window = vellora::makeChangingWindow(), .operations = {}, .input = {}};
  for (const auto part :
       {vellora::textOperations(), vellora::childOperations(), vellora::viewOperations()}) {
    program.operations.insert(program.operations.end(), part.begin(), part.end());
  }
  g_unix_fd_add(0, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), readInput, &program);
  sayWhenIdle("ready");
  gtk_main();
  return 0;
}
