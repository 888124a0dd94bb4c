#include "e2e/process.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace vellora::e2e {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

Deadline after(std::chrono::milliseconds time) { return std::chrono::steady_clock::now() + time; }
bool passed(Deadline deadline) { return std::chrono::steady_clock::now() >= deadline; }

int statusOf(int waited) {
  return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}

}  // namespace

Process::Process(std::vector<std::string> arguments, const std::string& log,
                 const std::map<std::string, std::string>& environment) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (!environment.contains(text.substr(0, text.find('=')))) variables.push_back(text);
  }
  for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  std::vector<char*> envp;
  for (std::string& variable : variables) envp.push_back(variable.data());
  envp.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  const int error = posix_spawnp(&id_, argv[0], &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + arguments[0]);
}

Process::Process(Process&& other) noexcept : id_(other.id_), status_(other.status_) {
  other.id_ = -1;
}

Process& Process::operator=(Process&& other) noexcept {
  if (this != &other) {
    stop();
    id_ = other.id_;
    status_ = other.status_;
    other.id_ = -1;
  }
  return *this;
}

Process::~Process() { stop(); }

void Process::reap(bool wait) {
  if (id_ < 0 || status_) return;
  int waited = 0;
  if (waitpid(id_, &waited, wait ? 0 : WNOHANG) == id_) status_ = statusOf(waited);
}

bool Process::running() {
  reap(false);
  return id_ >= 0 && !status_;
}

std::optional<int> Process::exitStatus() {
  reap(false);
  return status_;
}

void Process::signal(int number) const {
  if (id_ >= 0 && !status_) kill(id_, number);
}

void Process::stop() {
  if (!running()) return;
  kill(id_, SIGCONT);
  kill(id_, SIGTERM);
  for (const Deadline deadline = after(std::chrono::seconds(5)); running() && !passed(deadline);) {
    poll(nullptr, 0, 10);
  }
  if (running()) {
    kill(id_, SIGKILL);
    reap(true);
  }
}

double Process::processorTime() const {
  std::ifstream file("/proc/" + std::to_string(id_) + "/stat");
  std::string line;
  std::getline(file, line);
  const std::size_t name = line.rfind(')');
  if (name == std::string::npos) return 0;
  std::istringstream fields(line.substr(name + 2));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0;
  double system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

long Process::residentKilobytes() const {
  std::ifstream file("/proc/" + std::to_string(id_) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
  }
  return 0;
}

std::string outputOf(const std::vector<std::string>& arguments) {
  std::string name = "/tmp/vellora-e2e-output-XXXXXX";
  const int file = mkstemp(name.data());
  if (file >= 0) close(file);
  {
    Process process(arguments, name);
    for (const Deadline deadline = after(std::chrono::seconds(10));
         process.running() && !passed(deadline);) {
      poll(nullptr, 0, 5);
    }
  }
  std::ifstream content(name);
  std::ostringstream text;
  text << content.rdbuf();
  unlink(name.c_str());
  return text.str();
}

}  // namespace vellora::e2e
