#include "platform/linux/wayland/panel/shm_buffer.h"

#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace vellora {
namespace {

class File {
 public:
  // Of a size that nobody can change any more, so that neither side can make the other's reading
  // fail.
  explicit File(std::size_t size)
      : fd_(memfd_create("vellora-panel", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
    isMade_ = fd_ >= 0 && ftruncate(fd_, static_cast<off_t>(size)) == 0 &&
              fcntl(fd_, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0;
  }
  ~File() {
    if (fd_ >= 0) ::close(fd_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool isMade() const { return isMade_; }
  int fd() const { return fd_; }

 private:
  int fd_;
  bool isMade_ = false;
};

}  // namespace

const wl_buffer_listener ShmBuffer::listener{.release = [](void* data, wl_buffer*) {
  auto& self = *static_cast<ShmBuffer*>(data);
  self.isInUse_ = false;
  const auto released = self.released_;  // it may destroy the buffer
  released();
}};

std::unique_ptr<ShmBuffer> ShmBuffer::make(wl_shm* shm, int width, int height,
                                           std::function<void()> released) {
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width);
  if (width < 1 || height < 1 || stride < 0 || height > INT32_MAX / stride) return nullptr;
  const auto size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
  const File file(size);
  if (!file.isMade()) return nullptr;
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.fd(), 0);
  if (memory == MAP_FAILED) return nullptr;
  std::unique_ptr<ShmBuffer> made(new ShmBuffer);
  made->memory_ = memory;
  made->size_ = size;
  made->pixels_.reset(cairo_image_surface_create_for_data(
      static_cast<unsigned char*>(memory), CAIRO_FORMAT_ARGB32, width, height, stride));
  if (cairo_surface_status(made->pixels_.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  const WlShmPoolPtr pool(wl_shm_create_pool(shm, file.fd(), static_cast<std::int32_t>(size)));
  made->buffer_.reset(
      wl_shm_pool_create_buffer(pool.get(), 0, width, height, stride, WL_SHM_FORMAT_ARGB8888));
  wl_buffer_add_listener(made->buffer_.get(), &listener, made.get());
  made->released_ = std::move(released);
  return made;
}

bool ShmBuffer::discard() {
  if (madvise(memory_, size_, MADV_REMOVE) != 0) return false;
  cairo_surface_mark_dirty(pixels_.get());
  return true;
}

ShmBuffer::~ShmBuffer() {
  buffer_.reset();
  pixels_.reset();
  if (memory_ != nullptr) munmap(memory_, size_);
}

}  // namespace vellora
