// SPDX-License-Identifier: MIT
#include "appkit/NSBezierPath.h"

#include "appkit/NSGraphicsContext.h"
#include "foundation/NSLog.h"
#include "quartz/CGContext.h"

namespace cocoa {

const Class NSBezierPath::class_ = {.name = "NSBezierPath", .superclass = &NSObject::class_, .init = [] {
                                      return Ref<NSObject>(make<NSBezierPath>());
                                    }};

namespace {

CGContextRef current_port() {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  return context ? context->graphicsPort() : nullptr;
}

}  // namespace

NSBezierPath::NSBezierPath() : path_(CGPathCreateMutable()) {}

void NSBezierPath::moveToPoint(NSPoint point) {
  CGPathMoveToPoint(path_.get(), nullptr, point.x, point.y);
}

void NSBezierPath::lineToPoint(NSPoint point) {
  if (isEmpty()) {
    NSLog("NSBezierPath: a line needs a current point");
    return;
  }
  CGPathAddLineToPoint(path_.get(), nullptr, point.x, point.y);
}

void NSBezierPath::removeAllPoints() {
  path_.reset(CGPathCreateMutable());
}

bool NSBezierPath::isEmpty() const {
  return CGPathIsEmpty(path_.get());
}

void NSBezierPath::fill() const {
  CGContextRef context = current_port();
  CGContextBeginPath(context);
  CGContextAddPath(context, path_.get());
  CGContextFillPath(context);
}

void NSBezierPath::stroke() const {
  CGContextRef context = current_port();
  CGContextSaveGState(context);
  CGContextSetLineWidth(context, line_width_);
  CGContextSetLineCap(context, kCGLineCapButt);
  CGContextSetLineJoin(context, kCGLineJoinMiter);
  CGContextBeginPath(context);
  CGContextAddPath(context, path_.get());
  CGContextStrokePath(context);
  CGContextRestoreGState(context);
}

void NSBezierPath::clipRect(NSRect rect) {
  CGContextClipToRect(current_port(), rect);
}

}  // namespace cocoa
