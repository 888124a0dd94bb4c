#pragma once

namespace vellora::demo {

// Puts the player's style sheet on the default screen. After gtk_init.
void applyStyle();

}  // namespace vellora::demo
