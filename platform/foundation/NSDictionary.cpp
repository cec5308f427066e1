// SPDX-License-Identifier: MIT
#include "foundation/NSDictionary.h"

namespace cocoa {

const Class NSMutableDictionary::class_ = {.name = "NSMutableDictionary",
                                           .superclass = &NSObject::class_,
                                           .init = [] { return Ref<NSObject>(make<NSMutableDictionary>()); }};

void NSMutableDictionary::setObject_forKey(NSObject* object, std::string_view key) {
  if (object)
    objects_.insert_or_assign(std::string(key), object);
}

NSObject* NSMutableDictionary::objectForKey(std::string_view key) const {
  const auto found = objects_.find(key);
  return found == objects_.end() ? nullptr : found->second.get();
}

}  // namespace cocoa
