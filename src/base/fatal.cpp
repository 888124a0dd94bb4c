#include "base/fatal.h"

#include <cstdlib>
#include <iostream>

namespace vellora {

void fatalError(std::string_view message) {
  std::cerr << "Fatal error: " << message << std::endl;
  std::abort();
}

}  // namespace vellora
