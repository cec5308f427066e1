// SPDX-License-Identifier: MIT
#include "appkit/NSPopUpButton.h"

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSPopUpButton::class_ = {
    .name = "NSPopUpButton",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSPopUpButton>(frame)); },
    .initWithInterface =
        [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSPopUpButton>(decoder)); }};

namespace {

constexpr CGFloat pop_up_title_size = 11;
constexpr CGFloat pop_up_title_inset = 8;
constexpr CGFloat arrows_width = 16;

/// Two arrow heads, away from each other, about a point.
void draw_arrows(CGContextRef context, CGFloat x, CGFloat y) {
  constexpr CGFloat half_width = 3;
  constexpr CGFloat gap = 2;
  constexpr CGFloat height = 3;
  CGContextSetRGBStrokeColor(context, CGFloat(0.85), CGFloat(0.85), CGFloat(0.85), 1);
  CGContextSetLineWidth(context, 1.5);
  CGContextBeginPath(context);
  for (const int direction : {1, -1}) {
    const auto up = static_cast<CGFloat>(direction);
    CGContextMoveToPoint(context, x - half_width, y + up * gap);
    CGContextAddLineToPoint(context, x, y + up * (gap + height));
    CGContextAddLineToPoint(context, x + half_width, y + up * gap);
  }
  CGContextStrokePath(context);
}

}  // namespace

NSPopUpButton::NSPopUpButton(NSRect frame) : NSView(frame) {
  setCell(make<NSPopUpButtonCell>().get());
}

NSPopUpButton::NSPopUpButton(InterfaceDecoder& decoder) : NSView(decoder) {
  setCell(make<NSPopUpButtonCell>().get());
}

NSPopUpButton::~NSPopUpButton() = default;

void NSPopUpButton::applyInterface(InterfaceDecoder& decoder) {
  NSView::applyInterface(decoder);
  if (const Ref<NSPopUpButtonCell> cell = decoder.object_as<NSPopUpButtonCell>("cell"))
    setCell(cell.get());
}

void NSPopUpButton::setCell(NSPopUpButtonCell* cell) {
  cell_ = cell;
  cell_->setControlView(this);
}

void NSPopUpButton::addItemWithTitle(std::string_view title) {
  cell_->addItemWithTitle(title);
  setNeedsDisplay(true);
}
void NSPopUpButton::insertItemWithTitle_atIndex(std::string_view title, int index) {
  cell_->insertItemWithTitle_atIndex(title, index);
  setNeedsDisplay(true);
}
void NSPopUpButton::removeAllItems() {
  cell_->removeAllItems();
  setNeedsDisplay(true);
}
void NSPopUpButton::selectItemAtIndex(int index) {
  cell_->selectItemAtIndex(index);
  setNeedsDisplay(true);
}

Ref<NSString> NSPopUpButton::titleOfSelectedItem() const {
  return cell_->selectedItem() ? cell_->titleOfSelectedItem() : nullptr;
}

void NSPopUpButton::mouseDown(NSEvent*) {
  cell_->performClickWithFrame_inView(bounds(), this, {});
}

void NSPopUpButton::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  CGContextSetRGBFillColor(context, CGFloat(0.16), CGFloat(0.16), CGFloat(0.17), 1);
  CGContextFillRect(context, bounds());
  CGContextSetRGBStrokeColor(context, CGFloat(0.42), CGFloat(0.42), CGFloat(0.44), 1);
  CGContextStrokeRectWithWidth(context, NSInsetRect(bounds(), 0.5, 0.5), 1);
  draw_arrows(context, NSMaxX(bounds()) - arrows_width / 2 - 2, NSHeight(bounds()) / 2);

  const auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(NSFont::systemFontOfSize(pop_up_title_size).get(), NSFontAttributeName);
  attributes->setObject_forKey(NSColor::colorWithDeviceWhite_alpha(CGFloat(0.9), 1).get(),
                               NSForegroundColorAttributeName);
  const Ref<NSString> title = cell_->titleOfSelectedItem();
  const CGFloat height = sizeWithAttributes(title.get(), attributes.get()).height;
  const NSRect place = NSMakeRect(pop_up_title_inset, (NSHeight(bounds()) - height) / 2,
                                  NSWidth(bounds()) - pop_up_title_inset - arrows_width - 2, height);
  drawInRect_withAttributes(title.get(), place, attributes.get());
}

}  // namespace cocoa
