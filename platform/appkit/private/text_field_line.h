// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "foundation/NSGeometry.h"
#include "quartz/CGContext.h"
#include "quartz/text.h"

namespace cocoa {

class NSTextField;

/// How a text field's line of text lies in it, and its drawing.
class TextFieldLine {
 public:
  explicit TextFieldLine(const NSTextField& field) : field_(field) {}

  void scrollToStart() { scrolled_ = 0; }
  void scrollToCaret();
  /// Of the shown text, at a place in the field.
  size_t offsetAt(NSPoint place) const;
  void draw(CGContextRef context) const;

 private:
  NSRect textRect() const;
  TextStyle textStyle() const;
  CGFloat textStart() const;
  void drawFrame(CGContextRef context) const;
  void drawSelection(CGContextRef context) const;
  void drawCaret(CGContextRef context) const;

  const NSTextField& field_;
  CGFloat scrolled_ = 0;  ///< how far the text is moved to the left, in points, when it is too wide
};

}  // namespace cocoa
