// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "foundation/NSLog.h"
#include "stand_ins.h"

/// Any text is loaded whole, or is refused with one log line and leaves nothing behind.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace cocoa;
  using namespace cocoa::stand_in;
  Object::woken.clear();
  const auto owner = make<Owner>();
  {
    const NSAutoreleasePool pool;
    const Log log;
    const bool loaded = load({reinterpret_cast<const char*>(bytes), size}, owner.get());
    if (log.lines.size() != (loaded ? 0U : 1U) || (!loaded && Object::alive != 1))
      std::abort();
  }
  if (Object::alive != 1)
    std::abort();
  return 0;
}
