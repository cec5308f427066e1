// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "foundation/NSData.h"
#include "foundation/NSObject.h"

namespace cocoa {

/// Turns an object, with all that it encodes, into a typed stream: the bytes that the same class writes on
/// any other machine of the platform.
class NSArchiver {
 public:
  /// Null, and a line in the log, when the object or one that it encodes is of a class that is never
  /// archived.
  static Ref<NSData> archivedDataWithRootObject(const NSObject& root);
};

/// Turns a typed stream back into the object.
///
/// The stream may come from anybody. Anything but one whole archive of a known class gives null and a line in
/// the log: truncated, damaged, of another class, or with bytes after its root object.
class NSUnarchiver {
 public:
  static Ref<NSObject> unarchiveObjectWithData(const NSData& data,
                                               std::span<const Class* const> known_classes);
};

}  // namespace cocoa
