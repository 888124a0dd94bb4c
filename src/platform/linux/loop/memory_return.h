#pragma once

namespace vellora {

// From here on the process gives large blocks of memory (128 KiB and more, such as the pictures of
// captions) back to the system as soon as they are freed. Left to itself, the GNU C library takes
// the first that goes for a sign that it will be wanted again, keeps it and all up to 64 MiB that
// follow (mallopt(3), M_MMAP_THRESHOLD), and the process grows for minutes. Any thread.
void returnLargeBlocks();

}  // namespace vellora
