#include "platform/linux/wayland/locator/hyprland_locator.h"

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include "base/environment.h"
#include "platform/linux/socket/local_socket.h"
#include "platform/linux/wayland/locator/hyprland_words.h"
#include "platform/linux/wayland/locator/readable_source.h"

namespace vellora {

namespace {

constexpr const char* eventSocket = "/.socket2.sock";
constexpr const char* requestSocket = "/.socket.sock";

// Taken at once: a peer that never stops must not keep the loop from everything else.
constexpr std::size_t mostAtOnce = 65536;
// A longer answer is no list of windows that anybody has.
constexpr std::size_t longestAnswer = std::size_t{4} * 1024 * 1024;

void closeSocket(int& fd) {
  if (fd >= 0) close(fd);
  fd = -1;
}

}  // namespace

HyprlandLocator::HyprlandLocator(std::string folder) : folder_(std::move(folder)) { connect(); }

HyprlandLocator::~HyprlandLocator() { HyprlandLocator::close(); }

std::string HyprlandLocator::servedFolder() {
  const auto signature = environmentVariable("HYPRLAND_INSTANCE_SIGNATURE");
  if (!signature) return {};
  std::vector<std::filesystem::path> roots = {"/tmp"};  // of versions before 0.40
  if (auto runtime = environmentFolder("XDG_RUNTIME_DIR")) roots.insert(roots.begin(), *runtime);
  for (const auto& root : roots) {
    std::string folder = root / "hypr" / *signature;
    int fd = connectToLocalSocket(folder + eventSocket);
    if (fd < 0) continue;
    closeSocket(fd);
    return folder;
  }
  return {};
}

bool HyprlandLocator::open() {
  events_ = connectToLocalSocket(folder_ + eventSocket);
  if (events_ < 0) return false;
  eventSource_ = whenReadable(events_, [this] { readEvents(); });
  return true;
}

bool HyprlandLocator::putQuestion() {
  current_ = 0;
  return putRequest();
}

void HyprlandLocator::close() {
  dropRequest();
  eventSource_.reset();
  closeSocket(events_);
}

void HyprlandLocator::dropRequest() {
  requestSource_.reset();
  closeSocket(request_);
}

bool HyprlandLocator::putRequest() {
  dropRequest();
  answers_[current_].clear();
  request_ = connectToLocalSocket(folder_ + requestSocket);
  if (request_ < 0) return false;
  const std::string_view words = requests[current_];
  const ssize_t sent = send(request_, words.data(), words.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  requestSource_ = whenReadable(request_, [this] { readAnswer(); });
  return sent == static_cast<ssize_t>(words.size());
}

// Whatever it was: what has changed, the answer tells.
void HyprlandLocator::readEvents() {
  std::array<char, mostAtOnce> bytes;
  const ssize_t count = recv(events_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count <= 0) return reconnectLater();
  takeEvent();
}

void HyprlandLocator::readAnswer() {
  std::array<char, mostAtOnce> bytes;
  const ssize_t count = recv(request_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  std::string& answer = answers_[current_];
  if (count > 0) answer.append(bytes.data(), static_cast<std::size_t>(count));
  if (count < 0 || answer.size() > longestAnswer) return reconnectLater();
  if (count > 0) return;
  dropRequest();
  if (++current_ < requests.size()) {
    if (!putRequest()) reconnectLater();
    return;
  }
  // Titles of X11 programs are passed on as they are, which need not be UTF-8.
  takeAnswer(windowsInHyprlandAnswers({answers_[0], answers_[1], answers_[2]}));
}

}  // namespace vellora
