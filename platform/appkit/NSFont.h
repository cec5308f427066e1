// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSObject.h"

namespace cocoa {

/// A face of the system's font at a size.
class NSFont : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSFont(CGFloat size, bool bold) : size_(size), bold_(bold) {}
  /// Reads size and face of a metaFont; 13, 11 and 9 points for the named sizes.
  explicit NSFont(InterfaceDecoder& decoder);

  /// `size` in points; 0 or less is the standard size, 13.
  static Ref<NSFont> systemFontOfSize(CGFloat size);
  static Ref<NSFont> boldSystemFontOfSize(CGFloat size);
  /// The face of window titles, which is the bold one.
  static Ref<NSFont> titleBarFontOfSize(CGFloat size);

  CGFloat pointSize() const { return size_; }
  bool isBold() const { return bold_; }

 private:
  CGFloat size_;
  bool bold_;
};

}  // namespace cocoa
