// x_resources PID: what the X server keeps for the clients of that process (X-Resource extension):
// "RESOURCES BYTES_OF_PIXMAPS". Status 1 where it cannot tell.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <xcb/res.h>

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, Free>;

bool isOf(xcb_connection_t* c, std::uint32_t client, std::uint32_t process) {
  const xcb_res_client_id_spec_t wanted{client, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const ReplyPtr<xcb_res_query_client_ids_reply_t> ids(
      xcb_res_query_client_ids_reply(c, xcb_res_query_client_ids(c, 1, &wanted), nullptr));
  if (!ids) return false;
  const auto each = xcb_res_query_client_ids_ids_iterator(ids.get());
  return each.rem > 0 && xcb_res_client_id_value_value_length(each.data) > 0 &&
         *xcb_res_client_id_value_value(each.data) == process;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const auto process = static_cast<std::uint32_t>(std::atol(arguments[1]));
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(nullptr, nullptr), xcb_disconnect);
  xcb_connection_t* const c = connection.get();
  const ReplyPtr<xcb_res_query_version_reply_t> version(
      xcb_res_query_version_reply(c, xcb_res_query_version(c, 1, 2), nullptr));
  const ReplyPtr<xcb_res_query_clients_reply_t> clients(
      xcb_res_query_clients_reply(c, xcb_res_query_clients(c), nullptr));
  if (!version || !clients) return 1;
  std::uint64_t resources = 0;
  std::uint64_t bytes = 0;
  bool found = false;
  auto client = xcb_res_query_clients_clients_iterator(clients.get());
  for (; client.rem > 0; xcb_res_client_next(&client)) {
    const std::uint32_t base = client.data->resource_base;
    if (!isOf(c, base, process)) continue;
    found = true;
    const ReplyPtr<xcb_res_query_client_resources_reply_t> kinds(
        xcb_res_query_client_resources_reply(c, xcb_res_query_client_resources(c, base), nullptr));
    if (kinds) {
      auto kind = xcb_res_query_client_resources_types_iterator(kinds.get());
      for (; kind.rem > 0; xcb_res_type_next(&kind)) resources += kind.data->count;
    }
    const ReplyPtr<xcb_res_query_client_pixmap_bytes_reply_t> pixmaps(
        xcb_res_query_client_pixmap_bytes_reply(c, xcb_res_query_client_pixmap_bytes(c, base),
                                                nullptr));
    if (pixmaps) {
      bytes += std::uint64_t{pixmaps->bytes_overflow} << 32 | std::uint64_t{pixmaps->bytes};
    }
  }
  if (!found) return 1;
  std::printf("%llu %llu\n", static_cast<unsigned long long>(resources),
              static_cast<unsigned long long>(bytes));
  return 0;
}
