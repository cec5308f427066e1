// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "foundation/NSObject.h"

namespace cocoa {

/// Objects by name, retained.
class NSMutableDictionary : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// Replaces what stands under the key; a null object is ignored.
  void setObject_forKey(NSObject* object, std::string_view key);
  /// The object under the key, not retained for the caller; null when there is none.
  NSObject* objectForKey(std::string_view key) const;
  size_t count() const { return objects_.size(); }

 private:
  std::map<std::string, Ref<NSObject>, std::less<>> objects_;
};

}  // namespace cocoa
