// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSNumberFormatter.h"

namespace cocoa {

/// How a text field looks and what it accepts. Made by interface files; everybody else asks the field.
class NSTextFieldCell : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  /// Editable, selectable, with a line around, black on white, the system font at its standard size.
  NSTextFieldCell();
  /// Absent attributes are those of Interface Builder: neither editable nor selectable, no border, no
  /// background, natural alignment.
  explicit NSTextFieldCell(InterfaceDecoder& decoder);

  std::string title;
  bool editable = true;
  bool selectable = true;
  bool bordered = true;
  bool draws_background = true;
  bool sends_action_on_end_editing = false;
  NSTextAlignment alignment = NSNaturalTextAlignment;
  Ref<NSFont> font;
  Ref<NSColor> text_color;
  Ref<NSColor> background_color;
  Ref<NSNumberFormatter> formatter;
};

}  // namespace cocoa
