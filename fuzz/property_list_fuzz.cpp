// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "foundation/private/property_list.h"
#include "foundation/private/xml_well_formed.h"

/// Any bytes are refused, or are a list that can be changed, written as a whole document and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace cocoa;
  auto list = PropertyList::fromXML({reinterpret_cast<const char*>(bytes), size});
  if (!list)
    return 0;
  list->setValue("key", std::string("value"));
  const std::string written = list->xml();
  const auto again = PropertyList::fromXML(written);
  if (!check_xml(written) || !again || again->value("key") != PropertyListValue(std::string("value")) ||
      again->xml() != written)
    std::abort();
  return 0;
}
