#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vellora {

// Whether two processes are of one program, as far as the kernel and the containers' marks tell: a
// process with itself; a process with one that started it, or that one's, and so on, but never by
// way of the first process of all, which everything comes from; processes in the same container. A
// process that has ended belongs with nothing but its number. `proc` is where the kernel's process
// information is mounted. Reads a few small files. Any thread.
bool belongTogether(std::int32_t a, std::int32_t b, const std::filesystem::path& proc = "/proc");

// The container that a process runs in: an instance of a Flatpak application (by the file
// /.flatpak-info in its root; where that names no instance, the application), or a snap (as
// AppArmor or the control groups name it). Two processes are in the same one where the texts are
// equal; empty outside of all.
std::string containerOf(std::int32_t process, const std::filesystem::path& proc = "/proc");

}  // namespace vellora
