#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <poll.h>

#include "e2e/process.h"
#include "support/temporary_folder.h"

namespace vellora {

// The tests' own service of lyrics, on this machine.
class LyricsServer {
 public:
  explicit LyricsServer(std::vector<std::string> options = {})
      : process_(words(folder_.path(), std::move(options)), folder_ / "log") {
    put("[]");
    for (int i = 0; i < 600 && !folder_.has("port"); ++i) poll(nullptr, 0, 50);
    EXPECT_TRUE(folder_.has("port")) << folder_.read("log");
    EXPECT_EQ(setenv("no_proxy", "127.0.0.1", 1), 0);
  }

  // Its address; `manner`: in which way it misbehaves, see the script.
  std::string base(const std::string& manner = {}) const {
    return scheme + "://127.0.0.1:" + folder_.read("port") + (manner.empty() ? "" : "/" + manner);
  }
  std::string name() const { return "127.0.0.1:" + folder_.read("port"); }
  // What it has, as a list of records in JSON.
  void put(std::string_view records) { folder_.write("records.json", records); }
  // All requests so far, a line each.
  std::string requests() const { return folder_.read("requests"); }
  std::size_t requestCount() const {
    const std::string all = requests();
    return static_cast<std::size_t>(std::ranges::count(all, '\n'));
  }
  // From then on nobody listens there.
  void stop() { process_.stop(); }

  std::string scheme = "http";

 private:
  static std::vector<std::string> words(const std::string& folder,
                                        std::vector<std::string> options) {
    options.insert(options.begin(), {VELLORA_PYTHON, VELLORA_LYRICS_SERVER, folder});
    return options;
  }

  TemporaryFolder folder_;
  e2e::Process process_;
};

}  // namespace vellora
