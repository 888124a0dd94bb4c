#include <filesystem>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "base/environment.h"
#include "base/standard_streams.h"
#include "companion/program/commanding.h"
#include "companion/program/configuring.h"
#include "companion/program/keeping.h"
#include "companion/program/libraries.h"
#include "companion/program/options.h"
#include "platform/folder_watch.h"
#include "platform/player_watch.h"

int main(int argc, char** argv) {
  using namespace vellora::companion;
  vellora::openMissingStandardStreams();
  auto parsed = parseOptions(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc),
                             vellora::environmentVariable);
  if (const auto* answer = std::get_if<Answer>(&parsed)) {
    (answer->status == allWell ? std::cout : std::cerr) << answer->text;
    return answer->status;
  }
  auto& options = std::get<Options>(parsed);
  options.programFolder = std::filesystem::path(argc > 0 ? argv[0] : "").parent_path();
  switch (options.task) {
    case Task::command:
      return command(options);
    case Task::status:
      return tellStatus(options);
    case Task::check:
      return check(options);
    case Task::import:
      return import(options);
    case Task::config:
      return config(options);
    case Task::keep:
      break;
  }
  return keep(options, {vellora::makePlayerWatch(), vellora::makeFolderWatch});
}
