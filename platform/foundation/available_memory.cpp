// SPDX-License-Identifier: MIT
#include "foundation/available_memory.h"

#include <sys/mman.h>

namespace cocoa {

bool has_memory(size_t bytes) {
  // Asked of the kernel itself, which counts it against the process's limits; no page of it is touched.
  void* const room = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED)
    return false;
  munmap(room, bytes);
  return true;
}

}  // namespace cocoa
