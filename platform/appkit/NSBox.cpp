// SPDX-License-Identifier: MIT
#include "appkit/NSBox.h"

#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSBox::class_ = {
    .name = "NSBox",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSBox>(frame)); },
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSBox>(decoder)); }};

namespace {

constexpr CGFloat title_size = 11;
constexpr CGFloat title_padding = 2;
constexpr CGFloat title_inset = 10;
constexpr CGFloat border_width = 2;
constexpr CGFloat content_margin = 5;

constexpr std::string_view border_names[] = {"none", "line", "bezel", "groove"};
constexpr std::string_view position_names[] = {"noTitle",     "aboveTop", "atTop",      "belowTop",
                                               "aboveBottom", "atBottom", "belowBottom"};

Ref<NSMutableDictionary> title_attributes() {
  auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(NSFont::systemFontOfSize(title_size).get(), NSFontAttributeName);
  return attributes;
}

}  // namespace

NSBox::NSBox(NSRect frame) : NSView(frame) {
  const NSRect inside =
      NSInsetRect(borderRect(), border_width + content_margin, border_width + content_margin);
  setContentView(make<NSView>(inside).get());
}

NSBox::NSBox(InterfaceDecoder& decoder)
    : NSView(decoder),
      title_(decoder.attribute("title").value_or("")),
      title_position_(static_cast<NSTitlePosition>(decoder.choice("titlePosition", position_names, NSAtTop))),
      border_type_(static_cast<NSBorderType>(decoder.choice("borderType", border_names, NSGrooveBorder))) {}

void NSBox::applyInterface(InterfaceDecoder& decoder) {
  NSView::applyInterface(decoder);
  setContentView(decoder.object_as<NSView>("contentView").get());
}

void NSBox::setTitle(std::string_view title) {
  title_ = title;
  setNeedsDisplay(true);
}

void NSBox::setTitlePosition(NSTitlePosition position) {
  title_position_ = position;
  setNeedsDisplay(true);
}

void NSBox::setBorderType(NSBorderType type) {
  border_type_ = type;
  setNeedsDisplay(true);
}

void NSBox::setContentView(NSView* view) {
  if (!view || content_view_ == view || isDescendantOf(view))
    return;
  const Ref<NSView> old = content_view_;
  content_view_ = view;
  if (old)
    old->removeFromSuperview();
  addSubview(view);
}

CGFloat NSBox::titleHeight() const {
  if (title_.empty() || title_position_ == NSNoTitle)
    return 0;
  const auto text = make<NSString>(title_);
  return std::ceil(sizeWithAttributes(text.get(), title_attributes().get()).height) + title_padding;
}

NSRect NSBox::borderRect() const {
  NSRect rect = bounds();
  const CGFloat height = titleHeight();
  if (height == 0)
    return rect;
  const CGFloat border = border_type_ == NSNoBorder ? 0 : border_width;
  CGFloat taken = 0;
  if (title_position_ == NSAtTop || title_position_ == NSAtBottom)
    taken = std::ceil(height / 2);
  if (title_position_ == NSAboveTop || title_position_ == NSBelowBottom)
    taken = height + border;
  rect.size.height -= taken;
  if (title_position_ == NSAtBottom || title_position_ == NSBelowBottom)
    rect.origin.y += taken;
  return rect;
}

NSRect NSBox::titleRect() const {
  const CGFloat height = titleHeight();
  if (height == 0)
    return {};
  const NSSize text = sizeWithAttributes(make<NSString>(title_).get(), title_attributes().get());
  NSRect rect = NSMakeRect(title_inset, 0, std::ceil(text.width) + 2 * title_padding, height);
  switch (title_position_) {
    case NSBelowTop:
      rect.origin.y = NSMaxY(bounds()) - border_width - height;
      break;
    case NSAboveBottom:
      rect.origin.y = border_width;
      break;
    case NSAtBottom:
    case NSBelowBottom:
      break;
    default:
      rect.origin.y = NSMaxY(bounds()) - height;
  }
  return rect;
}

void NSBox::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  const NSRect title = titleRect();
  if (border_type_ != NSNoBorder) {
    CGContextSaveGState(context);
    if (!NSIsEmptyRect(title)) {
      // The border leaves room for the title that sits on it.
      CGContextBeginPath(context);
      CGContextAddRect(context, bounds());
      CGContextAddRect(context, title);
      CGContextEOClip(context);
    }
    CGContextSetLineWidth(context, 1);
    CGContextSetRGBStrokeColor(context, 0, 0, 0, CGFloat(0.35));
    CGContextStrokeRect(context, NSInsetRect(borderRect(), 0.5, 0.5));
    if (border_type_ == NSGrooveBorder) {
      CGContextSetRGBStrokeColor(context, 1, 1, 1, 0.5);
      CGContextStrokeRect(context, NSInsetRect(borderRect(), 1.5, 1.5));
    }
    CGContextRestoreGState(context);
  }
  if (!NSIsEmptyRect(title)) {
    drawInRect_withAttributes(make<NSString>(title_).get(), NSInsetRect(title, title_padding, 0),
                              title_attributes().get());
  }
}

}  // namespace cocoa
