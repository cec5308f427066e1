// SPDX-License-Identifier: MIT
#include "appkit/private/menu_list.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"

namespace cocoa {

namespace {

constexpr CGFloat text_size = 11;
constexpr CGFloat line_height = 18;
constexpr CGFloat separator_height = 9;
/// Above the first line and below the last.
constexpr CGFloat rim = 4;
constexpr CGFloat arrow_height = 14;
/// Left of the titles, with the check mark in it, and right of them.
constexpr CGFloat left_margin = 22;
constexpr CGFloat right_margin = 16;

Ref<NSMutableDictionary> text_attributes(CGFloat white) {
  auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(NSFont::systemFontOfSize(text_size).get(), NSFontAttributeName);
  attributes->setObject_forKey(NSColor::colorWithDeviceWhite_alpha(white, 1).get(),
                               NSForegroundColorAttributeName);
  return attributes;
}

void set_fill(CGContextRef context, double red, double green, double blue, double alpha = 1) {
  CGContextSetRGBFillColor(context, static_cast<CGFloat>(red), static_cast<CGFloat>(green),
                           static_cast<CGFloat>(blue), static_cast<CGFloat>(alpha));
}

void set_grey_stroke(CGContextRef context, double grey, CGFloat width) {
  CGContextSetRGBStrokeColor(context, static_cast<CGFloat>(grey), static_cast<CGFloat>(grey),
                             static_cast<CGFloat>(grey), 1);
  CGContextSetLineWidth(context, width);
}

/// The blue of the end caps, the upper half lighter as under glass.
void draw_light(CGContextRef context, NSRect rect) {
  set_fill(context, 0.15, 0.15, 0.6);
  CGContextFillRect(context, rect);
  set_fill(context, 0.25, 0.25, 0.78);
  const CGFloat half = std::ceil(NSHeight(rect) / 2);
  CGContextFillRect(context, NSMakeRect(NSMinX(rect), NSMaxY(rect) - half, NSWidth(rect), half));
}

void draw_check_mark(CGContextRef context, NSRect line) {
  const CGFloat x = NSMinX(line) + left_margin / 2;
  const CGFloat y = NSMinY(line) + NSHeight(line) / 2;
  CGContextBeginPath(context);
  CGContextMoveToPoint(context, x - 4, y);
  CGContextAddLineToPoint(context, x - 1, y - 3);
  CGContextAddLineToPoint(context, x + 4, y + 4);
  CGContextStrokePath(context);
}

}  // namespace

MenuList::MenuList(const NSMenu& menu) : NSView({}), items_(menu.itemArray()) {
  const auto attributes = text_attributes(1);
  CGFloat top = rim;
  for (const Ref<NSMenuItem>& each : items_) {
    const CGFloat height = each->isSeparatorItem() ? separator_height : line_height;
    lines_.push_back({top, height});
    top += height;
    const NSSize title = sizeWithAttributes(make<NSString>(each->title()).get(), attributes.get());
    widest_ = std::max(widest_, std::ceil(title.width));
  }
  setFrameSize(naturalSize());
}

CGFloat MenuList::contentHeight() const {
  return lines_.empty() ? 2 * rim : lines_.back().top + lines_.back().height + rim;
}

NSSize MenuList::naturalSize() const {
  return {left_margin + widest_ + right_margin, contentHeight()};
}

CGFloat MenuList::middleOf(int index) const {
  const Line& line = lines_[static_cast<size_t>(index)];
  return line.top + line.height / 2;
}

NSRect MenuList::rectOf(int index) const {
  const Line& line = lines_[static_cast<size_t>(index)];
  const CGFloat top = NSHeight(bounds()) + scrolled_ - line.top;
  return NSMakeRect(1, top - line.height, NSWidth(bounds()) - 2, line.height);
}

int MenuList::lineAt(NSPoint point) const {
  if (!NSPointInRect(point, bounds()) || arrowAt(point) != 0)
    return -1;
  for (int i = 0; i < numberOfLines(); ++i) {
    if (NSPointInRect(point, rectOf(i)))
      return i;
  }
  return -1;
}

void MenuList::setHighlighted(int index) {
  if (index == highlighted_)
    return;
  for (const int changed : {highlighted_, index}) {
    if (changed >= 0)
      setNeedsDisplayInRect(rectOf(changed));
  }
  highlighted_ = index;
}

bool MenuList::scrollTo(CGFloat scrolled) {
  const CGFloat most = std::max<CGFloat>(0, contentHeight() - NSHeight(bounds()));
  const CGFloat before = scrolled_;
  scrolled_ = std::clamp<CGFloat>(scrolled, 0, most);
  if (scrolled_ == before)
    return false;
  setNeedsDisplay(true);
  return true;
}

void MenuList::scrollToShow(int index) {
  const Line& line = lines_[static_cast<size_t>(index)];
  const CGFloat lowest = line.top - rim - (index > 0 ? arrow_height : 0);
  const CGFloat highest =
      line.top + line.height + rim + (index + 1 < numberOfLines() ? arrow_height : 0) - NSHeight(bounds());
  // In a view with room for hardly a line, its top is what must show.
  scrollTo(std::min(std::max(scrolled_, highest), lowest));
}

bool MenuList::hasMore(int direction) const {
  return direction > 0 ? scrolled_ > 0 : contentHeight() - scrolled_ > NSHeight(bounds());
}

int MenuList::arrowAt(NSPoint point) const {
  if (!NSPointInRect(point, bounds()))
    return 0;
  if (hasMore(1) && point.y >= NSHeight(bounds()) - arrow_height)
    return 1;
  return hasMore(-1) && point.y < arrow_height ? -1 : 0;
}

void MenuList::drawRect(NSRect dirty) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  set_fill(context, 0.11, 0.11, 0.12);
  // Beyond the bounds too, which may end within a pixel.
  CGContextFillRect(context, NSInsetRect(bounds(), -2, -2));
  for (int i = 0; i < numberOfLines(); ++i) {
    if (NSIntersectsRect(rectOf(i), dirty))
      drawLine(context, i);
  }
  for (const int direction : {1, -1}) {
    if (hasMore(direction))
      drawArrow(context, direction);
  }
  set_grey_stroke(context, 0.45, 1);
  CGContextStrokeRect(context, NSInsetRect(bounds(), 0.5, 0.5));
}

void MenuList::drawLine(CGContextRef context, int index) const {
  const NSRect rect = rectOf(index);
  const NSMenuItem& line = *item(index);
  if (line.isSeparatorItem()) {
    set_fill(context, 0.32, 0.32, 0.34);
    CGContextFillRect(context, NSMakeRect(NSMinX(rect) + 6, NSMinY(rect) + std::floor(NSHeight(rect) / 2),
                                          NSWidth(rect) - 12, 1));
    return;
  }
  const bool lit = index == highlighted_ && line.isEnabled();
  const CGFloat white = lit ? 1 : CGFloat(line.isEnabled() ? 0.88 : 0.45);
  if (lit)
    draw_light(context, rect);
  if (line.state() == NSOnState) {
    set_grey_stroke(context, static_cast<double>(white), 1.5);
    draw_check_mark(context, rect);
  }
  const auto attributes = text_attributes(white);
  const auto title = make<NSString>(line.title());
  const CGFloat height = sizeWithAttributes(title.get(), attributes.get()).height;
  drawInRect_withAttributes(title.get(),
                            NSMakeRect(left_margin, NSMinY(rect) + (NSHeight(rect) - height) / 2,
                                       NSWidth(rect) - left_margin, height),
                            attributes.get());
}

void MenuList::drawArrow(CGContextRef context, int direction) const {
  const CGFloat width = NSWidth(bounds());
  const CGFloat bottom = direction > 0 ? NSHeight(bounds()) - arrow_height : 0;
  set_fill(context, 0.11, 0.11, 0.12);
  CGContextFillRect(context, NSMakeRect(0, bottom, width, arrow_height));
  const CGFloat middle = bottom + arrow_height / 2;
  const auto tip = static_cast<CGFloat>(3 * direction);
  set_fill(context, 0.88, 0.88, 0.88);
  CGContextBeginPath(context);
  CGContextMoveToPoint(context, width / 2 - 5, middle - tip);
  CGContextAddLineToPoint(context, width / 2, middle + tip);
  CGContextAddLineToPoint(context, width / 2 + 5, middle - tip);
  CGContextFillPath(context);
}

}  // namespace cocoa
