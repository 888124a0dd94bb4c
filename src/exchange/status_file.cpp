#include "exchange/status_file.h"

#include <string>

#include "base/text.h"
#include "exchange/exchange_folder.h"

namespace vellora {

bool isStatusCurrent(const std::filesystem::path& statusFile, std::string_view message,
                     bool stopped, std::string_view lastMessage) {
  return textEquals(message, lastMessage) && !stopped && fileExists(statusFile);
}

bool writeStatusFile(const std::filesystem::path& statusFile, std::string_view message,
                     bool stopped) {
  return writeExchangeFile(statusFile, OverlayStatus(std::string(message), stopped));
}

}  // namespace vellora
