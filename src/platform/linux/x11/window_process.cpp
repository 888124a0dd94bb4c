#include "platform/linux/x11/window_process.h"

#include <sstream>
#include <string>

#include <xcb/res.h>

#include "base/files.h"

namespace vellora {
namespace {

// proc(5): the numbers in all namespaces that the reader sees it in, its own first.
bool isNumberWithin(std::int32_t client, std::int32_t named, const std::filesystem::path& proc) {
  std::istringstream status(readWholeFile(proc / std::to_string(client) / "status").value_or(""));
  for (std::string line; std::getline(status, line);) {
    if (!line.starts_with("NSpid:")) continue;
    std::istringstream numbers(line.substr(line.find(':') + 1));
    int count = 0;
    std::int32_t last = 0;
    for (std::int32_t number = 0; numbers >> number; ++count) last = number;
    return count > 1 && (named == 0 || last == named);
  }
  return false;
}

}  // namespace

WindowProcessQuestion::WindowProcessQuestion(const XSession& session, xcb_window_t window)
    : connection_(session.connection()) {
  if (!session.tellsProcesses()) return;
  const xcb_res_client_id_spec_t asked{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  sequence_ = xcb_res_query_client_ids(connection_, 1, &asked).sequence;
}

std::optional<std::int32_t> WindowProcessQuestion::take() {
  if (!sequence_) return std::nullopt;
  const XcbReply<xcb_res_query_client_ids_reply_t> reply(
      xcb_res_query_client_ids_reply(connection_, {*sequence_}, nullptr));
  if (!reply) return std::nullopt;
  const auto each = xcb_res_query_client_ids_ids_iterator(reply.get());
  if (each.rem < 1 || xcb_res_client_id_value_value_length(each.data) < 1) return std::nullopt;
  const std::uint32_t process = *xcb_res_client_id_value_value(each.data);
  if (process == 0 || process > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(process);
}

std::int32_t processHere(std::int32_t named, std::optional<std::int32_t> client,
                         const std::filesystem::path& proc) {
  return client && *client != named && isNumberWithin(*client, named, proc) ? *client : named;
}

}  // namespace vellora
