#include "platform/linux/socket/local_socket.h"

#include <cerrno>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace vellora {
namespace {

// Takes connections under that name, as many as the system lets wait.
class Listener {
 public:
  explicit Listener(const std::string& name, int waiting = 8)
      : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path, name.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    EXPECT_EQ(bind(fd_, reinterpret_cast<const sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(fd_, waiting), 0);
  }
  ~Listener() { close(fd_); }

 private:
  int fd_;
};

class LocalSocketTest : public testing::Test {
 protected:
  std::string path() const { return folder.path() / "socket"; }

  TemporaryFolder folder;
};

TEST_F(LocalSocketTest, ConnectsToAPath) {
  const Listener listener(path());
  const LocalSocket socket;
  EXPECT_TRUE(socket.connectTo(path()));
  EXPECT_TRUE(socket.isOf(getpid()));
  EXPECT_FALSE(socket.isOf(getppid()));
}

TEST_F(LocalSocketTest, ConnectsToAnAbstractNameAndToThatAlone) {
  const std::string name = '\0' + path();
  const Listener listener(name);
  EXPECT_TRUE(LocalSocket().connectTo(name));
  EXPECT_FALSE(LocalSocket().connectTo(name + "s"));
  EXPECT_FALSE(LocalSocket().connectTo(path()));
}

TEST_F(LocalSocketTest, SaysWhyItDoesNotConnect) {
  EXPECT_FALSE(LocalSocket().connectTo(path()));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(LocalSocket().connectTo(std::string(200, 'x')));
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_FALSE(LocalSocket().connectTo(""));
  { const Listener gone(path()); }
  EXPECT_FALSE(LocalSocket().connectTo(path()));
  EXPECT_EQ(errno, ECONNREFUSED);
}

TEST_F(LocalSocketTest, DoesNotWaitWhereTooManyWaitAlready) {
  const Listener listener(path(), 0);
  const LocalSocket first;
  EXPECT_TRUE(first.connectTo(path()));
  const LocalSocket second;
  EXPECT_FALSE(second.connectTo(path()));
  EXPECT_EQ(errno, EAGAIN);
}

TEST_F(LocalSocketTest, AnOpenConnectionOutlastsWhatMadeItUntilItIsClosed) {
  EXPECT_EQ(connectToLocalSocket(path()), -1);
  const Listener listener(path());
  const int fd = connectToLocalSocket(path());
  ASSERT_GE(fd, 0);
  EXPECT_EQ(write(fd, "x", 1), 1);
  EXPECT_EQ(close(fd), 0);
}

}  // namespace
}  // namespace vellora
