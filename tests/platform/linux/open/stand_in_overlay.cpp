// Stands in for the overlay where vellora-open is tested: writes "started" and, a line each, the
// URLs of the first opening to the file that VELLORA_STAND_IN_LOG names, and ends after it, or
// after twenty seconds.
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/loop/glib_application.h"

namespace vellora {
namespace {

class StandIn : public ApplicationDelegate {
 public:
  explicit StandIn(Application& application) : application_(application) {}

  void applicationDidFinishLaunching() override { write("started"); }
  void applicationOpen(const std::vector<std::string>& urls) override {
    for (const auto& url : urls) write(url);
    write("end");
    application_.terminate();
  }

 private:
  static void write(const std::string& line) {
    std::ofstream(std::getenv("VELLORA_STAND_IN_LOG"), std::ios::app) << line << std::endl;
  }

  Application& application_;
};

}  // namespace
}  // namespace vellora

int main() {
  vellora::GlibApplication application;
  const auto standIn = std::make_shared<vellora::StandIn>(application);
  application.setDelegate(standIn);
  const auto limit = application.scheduleTimer(20, [&] { application.terminate(); });
  application.run();
}
