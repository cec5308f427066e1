// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"

namespace cocoa {

enum NSTextAlignment : int {
  NSLeftTextAlignment = 0,
  NSRightTextAlignment = 1,
  NSCenterTextAlignment = 2,
  NSJustifiedTextAlignment = 3,
  NSNaturalTextAlignment = 4,
};

/// How the lines of a paragraph lie.
class NSMutableParagraphStyle : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  /// A mutable copy of the default style: natural alignment, lines broken between words.
  static Ref<NSMutableParagraphStyle> defaultParagraphStyle();
  void setAlignment(NSTextAlignment alignment) { alignment_ = alignment; }
  NSTextAlignment alignment() const { return alignment_; }

 private:
  NSTextAlignment alignment_ = NSNaturalTextAlignment;
};

/// Keys of text attributes and the class of their values.
inline constexpr std::string_view NSFontAttributeName = "NSFont";  // NSFont
inline constexpr std::string_view NSParagraphStyleAttributeName =
    "NSParagraphStyle";                                                        // NSMutableParagraphStyle
inline constexpr std::string_view NSForegroundColorAttributeName = "NSColor";  // NSColor

/// drawInRect:withAttributes: of a string, in the current context: from the rectangle's top downwards,
/// wrapped to its width; lines that do not fit wholly are left out, but the first is always drawn. Null text
/// draws nothing; null or missing attributes are the system font at 12 points, natural alignment, black.
void drawInRect_withAttributes(const NSString* text, NSRect rect, const NSMutableDictionary* attributes);

/// The size in points of one such text that is not wrapped.
NSSize sizeWithAttributes(const NSString* text, const NSMutableDictionary* attributes);

}  // namespace cocoa
