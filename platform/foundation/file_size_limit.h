// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>

#include <cstdint>

namespace cocoa {

/// Whether this process may make a file of `size` bytes, memory with a descriptor included. Beyond the limit
/// that its user has set (RLIMIT_FSIZE) the kernel does not refuse, but sends the signal SIGXFSZ, which ends
/// a process; signals are the host's affair, so what would be too large must not be tried.
inline bool may_make_file(uint64_t size) {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY || size <= limit.rlim_cur;
}

}  // namespace cocoa
