// Shows a notification and gives it another text RATE times a second, as a player does that tells
// what it plays, until it is ended.
//
//   notifier RATE
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <systemd/sd-bus.h>
#include <time.h>

namespace {

// The notification's number, of which 0 makes a new one; 0 when it fails.
std::uint32_t notify(sd_bus* bus, std::uint32_t number, const std::string& text) {
  sd_bus_message* reply = nullptr;
  std::uint32_t given = 0;
  const int sent = sd_bus_call_method(
      bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
      "org.freedesktop.Notifications", "Notify", nullptr, &reply, "susssasa{sv}i", "notifier",
      number, "", "Night Drive", text.c_str(), 0, 0, 0);
  if (sent >= 0) sd_bus_message_read(reply, "u", &given);
  sd_bus_message_unref(reply);
  return given;
}

}  // namespace

int main(int argc, char** argv) {
  const int rate = argc == 2 ? std::atoi(argv[1]) : 0;
  if (rate < 1) {
    std::fputs("usage: notifier RATE\n", stderr);
    return 2;
  }
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    std::fputs("notifier: no session bus\n", stderr);
    return 1;
  }
  timespec next{};
  clock_gettime(CLOCK_MONOTONIC, &next);
  std::uint32_t number = 0;
  for (int count = 0;; ++count) {
    number = notify(bus, number, "Line " + std::to_string(count) + " of a song in one language");
    if (number == 0) {
      std::fputs("notifier: nobody shows notifications\n", stderr);
      return 1;
    }
    next.tv_nsec += 1'000'000'000 / rate;
    if (next.tv_nsec >= 1'000'000'000) {
      next.tv_nsec -= 1'000'000'000;
      ++next.tv_sec;
    }
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
  }
}
