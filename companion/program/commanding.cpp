#include "companion/program/commanding.h"

#include <iostream>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>
#include <poll.h>

#include "companion/exchange/command_watch.h"
#include "companion/exchange/folder.h"
#include "companion/program/interruption.h"
#include "companion/song/text.h"
#include "platform/system_clock.h"

namespace vellora::companion {
namespace {

constexpr int stepMilliseconds = 50;
constexpr double statusPatience = 2.5;  // seconds

int unwritable(const ExchangeFolder& folder) {
  return fail(filesFailed, folder.path().string() + " cannot be written");
}

int finish(const CommandWatch& watch, CommandWatch::Outcome outcome) {
  if (outcome == CommandWatch::Outcome::done) {
    std::cout << watch.report() << std::endl;
    return allWell;
  }
  return fail(outcome == CommandWatch::Outcome::notTaken ? noOverlay : noEffect, watch.report());
}

void tellAsJson(const std::optional<NowPlayingTrack>& track,
                const std::optional<OverlayStatus>& status, const ExchangeFolder& folder) {
  using Json = nlohmann::ordered_json;
  Json whole{{"folder", folder.path().string()}, {"track", nullptr}, {"overlay", nullptr}};
  if (track) {
    whole["track"] = {{"title", track->title},
                      {"artist", track->artist},
                      {"album", track->album},
                      {"position", track->position},
                      {"playing", track->playing}};
  }
  if (status) whole["overlay"] = {{"message", status->message}, {"stopped", status->stopped}};
  std::cout << whole.dump(2, ' ', false, Json::error_handler_t::replace) << std::endl;
}

}  // namespace

int command(const Options& options) {
  ExchangeFolder folder(options.exchange);
  if (const auto reason = folder.make()) return fail(filesFailed, *reason);
  const SystemClock clock;
  const Interruption interruption;
  CommandWatch watch(options.command, options.target, options.patience);
  while (!interruption.asked()) {
    const auto step = watch.step(clock.now(), folder.nowPlaying(), folder.commandWaits());
    if (step.sync && !folder.write(*step.sync)) return unwritable(folder);
    if (step.command && !folder.write(*step.command)) return unwritable(folder);
    if (step.withdraw) folder.withdrawCommand();
    if (step.outcome != CommandWatch::Outcome::waiting) return finish(watch, step.outcome);
    poll(nullptr, 0, stepMilliseconds);
  }
  interruption.take();
  return fail(noEffect, "interrupted before the effect was seen");
}

int tellStatus(const Options& options) {
  ExchangeFolder folder(options.exchange);
  if (const auto reason = folder.make()) return fail(filesFailed, *reason);
  const SystemClock clock;
  const double begin = clock.now();
  // An overlay that a signal ended leaves its last word. One that runs says it again.
  const auto left = folder.status();
  if (left && !left->stopped) folder.withdrawStatus();
  if (!folder.write(SyncRequest{begin})) return unwritable(folder);
  std::optional<NowPlayingTrack> track;
  for (double now = begin; now - begin < statusPatience && now >= begin; now = clock.now()) {
    track = folder.nowPlaying();
    if (track && track->isUsable(now) && track->updatedAt > begin) break;
    track.reset();
    poll(nullptr, 0, stepMilliseconds);
  }
  const auto status = folder.status();
  if (options.json) {
    tellAsJson(track, status, folder);
    return track ? allWell : noOverlay;
  }
  if (track) std::cout << describe(*track, track->position) << "\n";
  if (status) std::cout << "overlay: " << cleaned(status->message) << "\n";
  std::cout << "folder: " << folder.path().string() << std::endl;
  if (track) return allWell;
  return fail(noOverlay, "nothing is published: no overlay follows this folder, or no player runs");
}

}  // namespace vellora::companion
