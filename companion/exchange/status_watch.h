#pragma once

#include <optional>
#include <string>

#include "exchange/records/records.h"

namespace vellora::companion {

// Whether the overlay that has left a status line still runs. One that does writes the line again
// where it is missing; so the line is taken away now and then. One that has said that it stopped is
// believed. One thread.
class StatusWatch {
 public:
  // Seconds: between two such questions, none of which is needed while what plays is told; for the
  // line to come back.
  static constexpr double interval = 10, patience = 3;
  // That a publication is from the overlay of now.
  static constexpr double freshness = 2;

  struct Step {
    std::string shown;      // the line, for people; empty where no overlay runs
    bool withdraw = false;  // the file is to be removed
  };
  // To be called twice a second or more often. `status`: what stands in the file; `published`: what
  // stands in the now-playing file. `now` in seconds since 1970.
  Step step(double now, const std::optional<OverlayStatus>& status,
            const std::optional<NowPlayingTrack>& published);

 private:
  std::string last_;
  double heardAt_ = 0;             // the overlay, for the last time
  std::optional<double> askedAt_;  // an answer is awaited
};

}  // namespace vellora::companion
