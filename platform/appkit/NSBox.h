// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "appkit/NSView.h"

namespace cocoa {

enum NSBorderType : int { NSNoBorder = 0, NSLineBorder = 1, NSBezelBorder = 2, NSGrooveBorder = 3 };
enum NSTitlePosition : int {
  NSNoTitle = 0,
  NSAboveTop = 1,
  NSAtTop = 2,
  NSBelowTop = 3,
  NSAboveBottom = 4,
  NSAtBottom = 5,
  NSBelowBottom = 6,
};

/// A border with a title around a content view.
class NSBox : public NSView {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit NSBox(NSRect frame);
  /// Reads title, border and content view.
  explicit NSBox(InterfaceDecoder& decoder);
  void applyInterface(InterfaceDecoder& decoder) override;

  void setTitle(std::string_view title);
  const std::string& title() const { return title_; }
  void setTitlePosition(NSTitlePosition position);
  NSTitlePosition titlePosition() const { return title_position_; }
  void setBorderType(NSBorderType type);
  NSBorderType borderType() const { return border_type_; }

  NSView* contentView() const { return content_view_.get(); }
  /// Takes the old one's place; null is ignored.
  void setContentView(NSView* view);

  /// Where the border runs, in the box's coordinates: the bounds, less what the title takes above or below.
  /// At the top or bottom edge the border runs through the middle of the title.
  NSRect borderRect() const;
  /// Of the title; zero when there is none.
  NSRect titleRect() const;

  void drawRect(NSRect dirty) override;

 private:
  CGFloat titleHeight() const;
  std::string title_ = "Title";
  NSTitlePosition title_position_ = NSAtTop;
  NSBorderType border_type_ = NSGrooveBorder;
  Ref<NSView> content_view_;
};

}  // namespace cocoa
