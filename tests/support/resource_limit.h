// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>

namespace test_support {

/// A limit of this process, such as RLIMIT_AS, that is lower while this lives.
class ResourceLimit {
 public:
  ResourceLimit(int resource, uint64_t most) : resource_(resource) {
    getrlimit(kind(), &before_);
    const rlimit lower{most, before_.rlim_max};
    setrlimit(kind(), &lower);
  }
  ~ResourceLimit() { setrlimit(kind(), &before_); }
  ResourceLimit(const ResourceLimit&) = delete;
  ResourceLimit& operator=(const ResourceLimit&) = delete;

 private:
  __rlimit_resource kind() const { return static_cast<__rlimit_resource>(resource_); }
  int resource_;
  rlimit before_{};
};

/// What RLIMIT_AS counts, in bytes.
inline uint64_t address_space() {
  std::ifstream sizes("/proc/self/statm");
  uint64_t pages = 0;
  sizes >> pages;
  return pages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace test_support
