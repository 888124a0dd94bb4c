#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "controller/model/controller_model.h"
#include "controller/model/step.h"
#include "controller/overlay_delegate.h"
#include "support/fake_platform.h"

namespace vellora::model {

// The controller on fakes and on real files, in a world that the test makes true before each step.
class RealController {
 public:
  // Its files come into this folder, which must be there and is emptied for each world.
  explicit RealController(std::filesystem::path root);
  ~RealController();

  // A program that starts in a new world, with the snapshot of a folder or without one.
  void begin(const World& world);
  void start(std::optional<std::size_t> folder, bool hasStatusItem, bool hasButton);

  // What changed by this step becomes true for the controller, too.
  void follow(const World& world, const Step& step, std::size_t at);

  void launch();
  void tick();
  void read(const World& world);
  void finishReading();
  void openUrl(const OpenedUrl& url);
  void choose(std::size_t menuEntry);

  // The first thing in which it is not as the model and the world say; empty when it is.
  std::string difference(const ControllerModel& model, const World& world, std::size_t at);
  // The same for all folders: also what is in them that should not be.
  std::string differenceOnDisk(const World& world);

 private:
  std::filesystem::path file(std::size_t folder, const char* name) const;
  void writeSnapshot(const Folder& folder, std::size_t at, int variant);
  void writeSync(const Folder& folder, std::size_t at);
  void writeCommand(const Folder& folder, std::size_t at, int variant);
  std::string captionDifference(const ControllerModel& model) const;
  std::string fileDifference(const Folder& folder, std::size_t at) const;
  std::string nowPlayingDifference(const Folder& folder, std::size_t at) const;

  std::filesystem::path root_;
  std::unique_ptr<FakePlatform> platform_;
  std::shared_ptr<OverlayDelegate> controller_;
  std::ostringstream output_;
};

}  // namespace vellora::model
