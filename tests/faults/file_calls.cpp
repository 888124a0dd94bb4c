// The system's file calls, each of which asks first whether it is to fail. Linked before the
// system's library, these are what the program and the C++ library call. The signatures and names
// are the system's.

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "faults/fault_plan.h"

namespace {

using vellora::faults::Fault;
using vellora::faults::next;

// The call that this one stands before.
template <typename Function>
Function* real(Function*, const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

template <typename Result>
Result fail(const Fault& fault, Result result) {
  errno = fault.error;
  return result;
}

mode_t modeOf(int flags, va_list& arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  static auto* const call = real(&::open, "open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  if (const auto fault = next("open", path)) return fail(*fault, -1);
  return call(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  static auto* const call = real(&::openat, "openat");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  if (const auto fault = next("openat", path)) return fail(*fault, -1);
  return call(folder, path, flags, mode);
}

ssize_t read(int file, void* buffer, size_t size) {
  static auto* const call = real(&::read, "read");
  const auto fault = next("read");
  if (fault && fault->error != 0) return fail(*fault, ssize_t{-1});
  return call(file, buffer, fault ? std::min(fault->bytes, size) : size);
}

ssize_t write(int file, const void* bytes, size_t size) {
  static auto* const call = real(&::write, "write");
  const auto fault = next("write");
  if (fault && fault->error != 0) return fail(*fault, ssize_t{-1});
  return call(file, bytes, fault ? std::min(fault->bytes, size) : size);
}

// Not carried out: no test here ends the system, and thousands of them would wait for the disk.
int fsync(int) {
  const auto fault = next("fsync");
  return fault ? fail(*fault, -1) : 0;
}

// A descriptor is gone even where its closing reports an error.
int close(int file) {
  static auto* const call = real(&::close, "close");
  const auto fault = next("close");
  const int result = call(file);
  return fault ? fail(*fault, -1) : result;
}

int rename(const char* from, const char* to) noexcept {
  static auto* const call = real(&::rename, "rename");
  if (const auto fault = next("rename", to)) return fail(*fault, -1);
  return call(from, to);
}

int unlink(const char* path) noexcept {
  static auto* const call = real(&::unlink, "unlink");
  if (const auto fault = next("unlink", path)) return fail(*fault, -1);
  return call(path);
}

int stat(const char* path, struct stat* status) noexcept {
  static auto* const call = real(&::stat, "stat");
  if (const auto fault = next("stat", path)) return fail(*fault, -1);
  return call(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  static auto* const call = real(&::lstat, "lstat");
  if (const auto fault = next("lstat", path)) return fail(*fault, -1);
  return call(path, status);
}

int fstat(int file, struct stat* status) noexcept {
  static auto* const call = real(&::fstat, "fstat");
  if (const auto fault = next("fstat")) return fail(*fault, -1);
  return call(file, status);
}

int mkdir(const char* path, mode_t mode) noexcept {
  static auto* const call = real(&::mkdir, "mkdir");
  if (const auto fault = next("mkdir", path)) return fail(*fault, -1);
  return call(path, mode);
}

int fchmodat(int folder, const char* path, mode_t mode, int flags) noexcept {
  static auto* const call = real(&::fchmodat, "fchmodat");
  if (const auto fault = next("fchmodat", path)) return fail(*fault, -1);
  return call(folder, path, mode, flags);
}

DIR* opendir(const char* path) {
  static auto* const call = real(&::opendir, "opendir");
  if (const auto fault = next("opendir", path)) return fail<DIR*>(*fault, nullptr);
  return call(path);
}

DIR* fdopendir(int file) {
  static auto* const call = real(&::fdopendir, "fdopendir");
  if (const auto fault = next("fdopendir")) return fail<DIR*>(*fault, nullptr);
  return call(file);
}

dirent* readdir(DIR* folder) {
  static auto* const call = real(&::readdir, "readdir");
  if (const auto fault = next("readdir")) return fail<dirent*>(*fault, nullptr);
  return call(folder);
}

}  // extern "C"
