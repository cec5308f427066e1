// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "archived_samples.h"
#include "foundation/NSLog.h"

/// Any bytes are refused, or are an object that can be written and comes back from that the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace cocoa;
  const NSLogHook quiet([](std::string_view) {});
  const Ref<NSObject> object = samples::unarchive({bytes, bytes + size});
  if (!object)
    return 0;
  const auto archived = samples::archive(*object);
  const Ref<NSObject> again = samples::unarchive(archived);
  if (!again || samples::archive(*again) != archived)
    std::abort();
  return 0;
}
