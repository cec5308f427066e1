// SPDX-License-Identifier: MIT
#include "appkit/NSColorWell.h"

#include <utility>

#include "appkit/NSEvent.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/private/NSColorPanel.h"
#include "appkit/private/color_picking.h"
#include "foundation/InterfaceDecoder.h"
#include "quartz/rounded_rect.h"

namespace cocoa {

const Class NSColorWell::class_ = {
    .name = "NSColorWell",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSColorWell>(frame)); },
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSColorWell>(decoder)); }};

namespace {

constexpr CGFloat frame_width = 4;
constexpr CGFloat frame_corner = 6;
constexpr CGFloat color_corner = 3;

void fill_rounded(CGContextRef context, NSRect rect, CGFloat radius) {
  CGContextBeginPath(context);
  add_rounded_rect(context, rect, 2 * radius, 2 * radius);
  CGContextFillPath(context);
}

}  // namespace

NSColorWell::NSColorWell(NSRect frame) : NSView(frame), color_(NSColor::blackColor()) {}

NSColorWell::NSColorWell(InterfaceDecoder& decoder)
    : NSView(decoder), color_(NSColor::blackColor()), bordered_(decoder.boolean("bordered", true)) {}

NSColorWell::~NSColorWell() {
  deactivate();
}

void NSColorWell::applyInterface(InterfaceDecoder& decoder) {
  NSView::applyInterface(decoder);
  setColor(decoder.object_as<NSColor>("color").get());
}

void NSColorWell::setColor(NSColor* color) {
  if (!color)
    return;
  color_ = color;
  setNeedsDisplay(true);
  if (isActive())
    panel_->setColor(color);
}

void NSColorWell::takeColorFrom(const NSColorPanel& panel) {
  if (color_->isEqual(panel.color()))
    return;
  color_ = panel.color();
  setNeedsDisplay(true);
  picking_ = panel.isPicking();
  send(action_);
}

void NSColorWell::pickingEnded() {
  if (std::exchange(picking_, false))
    send(end_action_);
}

void NSColorWell::send(SEL action) {
  if (const Ref<NSObject> target = target_.get(); target && action)
    target->performSelector_withObject(action, this);
}

bool NSColorWell::isActive() const {
  return panel_ && panel_->well() == this;
}

void NSColorWell::activate() {
  if (!window())
    return;
  if (!panel_)
    panel_ = NSColorPanel::panelOf(*window());
  panel_->edit(this);
  panel_->makeKeyAndOrderFront(this);
}

void NSColorWell::deactivate() {
  if (isActive())
    panel_->edit(nullptr);
}

void NSColorWell::setTarget_action(NSObject* target, SEL action) {
  target_ = WeakRef<NSObject>(target);
  action_ = action;
}

void NSColorWell::viewDidMoveToWindow() {
  if (panel_ && panel_->ownerWindow() == window())
    return;
  deactivate();
  panel_ = nullptr;
}

void NSColorWell::setPressed(bool pressed) {
  if (pressed_ == pressed)
    return;
  pressed_ = pressed;
  setNeedsDisplay(true);
}

void NSColorWell::mouseDown(NSEvent*) {
  setPressed(true);
}

void NSColorWell::mouseDragged(NSEvent* event) {
  setPressed(NSPointInRect(convertPoint_fromView(event->locationInWindow(), nullptr), bounds()));
}

void NSColorWell::mouseUp(NSEvent*) {
  if (!pressed_)
    return;
  setPressed(false);
  activate();
}

void NSColorWell::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  NSRect inside = bounds();
  if (bordered_) {
    // A dark mount with light around it; an active or pressed well lights up.
    CGContextSetRGBFillColor(context, 0, 0, 0, CGFloat(0.55));
    fill_rounded(context, bounds(), frame_corner);
    CGContextSetLineWidth(context, 1);
    const bool lit = isActive() || pressed_;
    CGContextSetRGBStrokeColor(context, 1, 1, 1, lit ? CGFloat(0.95) : CGFloat(0.35));
    CGContextBeginPath(context);
    add_rounded_rect(context, NSInsetRect(bounds(), CGFloat(0.5), CGFloat(0.5)), 2 * frame_corner,
                     2 * frame_corner);
    CGContextStrokePath(context);
    inside = NSInsetRect(inside, frame_width, frame_width);
  }
  if (color_->alphaComponent() < 1) {
    // What shows through is black below and white above.
    CGContextSetRGBFillColor(context, 1, 1, 1, 1);
    fill_rounded(context, inside, color_corner);
    CGContextSetRGBFillColor(context, 0, 0, 0, 1);
    NSRect lower = inside;
    lower.size.height /= 2;
    fill_rounded(context, lower, color_corner);
  }
  color_->set();
  fill_rounded(context, inside, color_corner);
  CGContextSetRGBStrokeColor(context, 0, 0, 0, CGFloat(0.4));
  CGContextBeginPath(context);
  add_rounded_rect(context, NSInsetRect(inside, CGFloat(0.5), CGFloat(0.5)), 2 * color_corner,
                   2 * color_corner);
  CGContextSetLineWidth(context, 1);
  CGContextStrokePath(context);
}

}  // namespace cocoa
