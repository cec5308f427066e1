// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "appkit/NSMenu.h"
#include "appkit/NSView.h"
#include "quartz/CGContext.h"

namespace cocoa {

/// Draws the lines of a menu, the marked ones with a check mark, one of them lit. A list that is taller than
/// the view shows a part, with an arrow at an end where there is more.
///
/// The lines are those that the menu has when the list is made: what is changed later does not show.
class MenuList : public NSView {
 public:
  explicit MenuList(const NSMenu& menu);

  /// The size in points at which everything shows.
  NSSize naturalSize() const;
  /// How far the middle of a line is below the list's top edge when it is not scrolled.
  CGFloat middleOf(int index) const;

  int numberOfLines() const { return static_cast<int>(items_.size()); }
  NSMenuItem* item(int index) const { return items_[static_cast<size_t>(index)].get(); }
  /// The line at a point of the view; -1 on the rim, on an arrow and outside.
  int lineAt(NSPoint point) const;
  /// Where a line is in the view now.
  NSRect rectOf(int index) const;

  /// -1 for none.
  int highlighted() const { return highlighted_; }
  void setHighlighted(int index);

  /// How much of the list lies above the view's top edge, in points.
  CGFloat scrolled() const { return scrolled_; }
  /// Kept within what there is to scroll; whether it moved.
  bool scrollTo(CGFloat scrolled);
  void scrollToShow(int index);
  /// 1 when the point is on the arrow at the top, which asks for what is above; -1 at the bottom; else 0.
  int arrowAt(NSPoint point) const;

  bool isOpaque() const override { return true; }
  void drawRect(NSRect dirty) override;

 private:
  struct Line {
    CGFloat top;  ///< below the top edge of the whole list
    CGFloat height;
  };
  CGFloat contentHeight() const;
  bool hasMore(int direction) const;
  void drawLine(CGContextRef context, int index) const;
  void drawArrow(CGContextRef context, int direction) const;

  std::vector<Ref<NSMenuItem>> items_;
  std::vector<Line> lines_;
  CGFloat widest_ = 0;
  CGFloat scrolled_ = 0;
  int highlighted_ = -1;
};

}  // namespace cocoa
