#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "foundation/property_list.h"

/// Any bytes are refused, or are a list that can be changed, written and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace cocoa;
  std::string cause;
  auto list = PropertyList::fromBytes({reinterpret_cast<const char*>(bytes), size}, cause);
  if (!list)
    return 0;
  list->setValue("key", "value");
  const auto again = PropertyList::fromBytes(list->xml(), cause);
  if (!again || again->value("key") != PropertyListValue("value"))
    std::abort();
  return 0;
}
