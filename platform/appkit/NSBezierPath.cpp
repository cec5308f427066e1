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
NSBezierPath::~NSBezierPath() {
  CGPathRelease(path_);
}

Ref<NSBezierPath> NSBezierPath::bezierPathWithRect(NSRect rect) {
  auto path = bezierPath();
  CGPathAddRect(path->path_, nullptr, rect);
  return path;
}

Ref<NSBezierPath> NSBezierPath::bezierPathWithOvalInRect(NSRect rect) {
  auto path = bezierPath();
  CGPathAddEllipseInRect(path->path_, nullptr, rect);
  return path;
}

void NSBezierPath::moveToPoint(NSPoint point) {
  CGPathMoveToPoint(path_, nullptr, point.x, point.y);
}

void NSBezierPath::lineToPoint(NSPoint point) {
  if (isEmpty()) {
    NSLog("NSBezierPath: a line needs a current point");
    return;
  }
  CGPathAddLineToPoint(path_, nullptr, point.x, point.y);
}

void NSBezierPath::curveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint control1, NSPoint control2) {
  if (isEmpty()) {
    NSLog("NSBezierPath: a curve needs a current point");
    return;
  }
  CGPathAddCurveToPoint(path_, nullptr, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
}

void NSBezierPath::closePath() {
  CGPathCloseSubpath(path_);
}

void NSBezierPath::removeAllPoints() {
  CGPathRelease(path_);
  path_ = CGPathCreateMutable();
}

bool NSBezierPath::isEmpty() const {
  return CGPathIsEmpty(path_);
}

bool NSBezierPath::containsPoint(NSPoint point) const {
  return CGPathContainsPoint(path_, nullptr, point, rule_ == NSEvenOddWindingRule);
}

void NSBezierPath::fill() const {
  CGContextRef context = current_port();
  CGContextBeginPath(context);
  CGContextAddPath(context, path_);
  CGContextDrawPath(context, rule_ == NSEvenOddWindingRule ? kCGPathEOFill : kCGPathFill);
}

void NSBezierPath::stroke() const {
  CGContextRef context = current_port();
  CGContextSaveGState(context);
  CGContextSetLineWidth(context, line_width_);
  CGContextSetLineCap(context, kCGLineCapButt);
  CGContextSetLineJoin(context, kCGLineJoinMiter);
  CGContextBeginPath(context);
  CGContextAddPath(context, path_);
  CGContextStrokePath(context);
  CGContextRestoreGState(context);
}

void NSBezierPath::addClip() const {
  CGContextRef context = current_port();
  CGContextBeginPath(context);
  CGContextAddPath(context, path_);
  if (rule_ == NSEvenOddWindingRule) {
    CGContextEOClip(context);
  } else {
    CGContextClip(context);
  }
}

void NSBezierPath::fillRect(NSRect rect) {
  CGContextFillRect(current_port(), rect);
}

void NSBezierPath::strokeRect(NSRect rect) {
  bezierPathWithRect(rect)->stroke();
}

void NSBezierPath::clipRect(NSRect rect) {
  CGContextClipToRect(current_port(), rect);
}

void NSBezierPath::strokeLineFromPoint_toPoint(NSPoint from, NSPoint to) {
  const auto line = bezierPath();
  line->moveToPoint(from);
  line->lineToPoint(to);
  line->stroke();
}

void NSRectFill(NSRect rect) {
  NSBezierPath::fillRect(rect);
}

}  // namespace cocoa
