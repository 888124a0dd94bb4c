#pragma once

#include <filesystem>
#include <ostream>
#include <vector>

#include "platform/linux/players/player_descriptions.h"

namespace vellora {

// The descriptions of these folders in the order in which they are tried, what hides what, where
// they are looked for, and the problems. False when there are problems.
bool listDescriptions(const std::vector<std::filesystem::path>& folders, std::ostream& output);

// What is wrong with these files, or what they describe and where Vellora would find them: in one
// of the folders. False when there are problems.
bool checkDescriptions(const std::vector<std::filesystem::path>& files,
                       const std::vector<std::filesystem::path>& folders, std::ostream& output);

}  // namespace vellora
