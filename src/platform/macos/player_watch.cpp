#include "platform/player_watch.h"

namespace vellora {

// macOS has no public interface by which a program learns what others play.
std::unique_ptr<PlayerWatch> makePlayerWatch() { return nullptr; }

}  // namespace vellora
