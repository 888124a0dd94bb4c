#pragma once

#include "companion/exchange/keeper.h"
#include "companion/settings/settings.h"

namespace vellora::companion {

// Gives the keeper what adds to the lines of songs, as the settings want it.
void addToLines(Keeper& keeper, const Settings& settings);

}  // namespace vellora::companion
