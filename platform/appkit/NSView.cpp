// SPDX-License-Identifier: MIT
#include "appkit/NSView.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSView::class_ = {
    .name = "NSView",
    .superclass = &NSResponder::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSView>(frame)); },
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSView>(decoder)); }};

namespace {

bool contains(NSRect outer, NSRect inner) {
  return NSMinX(inner) >= NSMinX(outer) && NSMaxX(inner) <= NSMaxX(outer) && NSMinY(inner) >= NSMinY(outer) &&
         NSMaxY(inner) <= NSMaxY(outer);
}

/// All of the device pixels that a rectangle touches. A view that ends within a pixel has it to itself: left
/// to what is behind, the last row and column of a window of 387.2 pixels would be the window's grey.
NSRect touched_pixels(CGContextRef context, NSRect rect) {
  const CGAffineTransform to_device = CGContextGetUserSpaceToDeviceSpaceTransform(context);
  // As much as rounding may have lifted an edge over that of a pixel.
  constexpr double noise = 1.0 / 256;
  const auto widen = [](CGFloat& origin, CGFloat& extent, CGFloat scale, CGFloat offset) {
    const auto factor = static_cast<double>(scale);
    const auto moved = static_cast<double>(offset);
    const double low = std::floor(static_cast<double>(origin) * factor + moved + noise);
    const double high = std::ceil(static_cast<double>(origin + extent) * factor + moved - noise);
    origin = static_cast<CGFloat>((low - moved) / factor);
    extent = static_cast<CGFloat>((high - low) / factor);
  };
  if (to_device.a > 0 && to_device.d > 0) {
    widen(rect.origin.x, rect.size.width, to_device.a, to_device.tx);
    widen(rect.origin.y, rect.size.height, to_device.d, to_device.ty);
  }
  return rect;
}

}  // namespace

NSView::NSView(NSRect frame) : frame_(frame) {}

NSView::NSView(InterfaceDecoder& decoder) : frame_(decoder.frame()) {}

NSView::~NSView() {
  for (const Ref<NSView>& view : subviews_) {
    view->superview_ = nullptr;
    view->moveToWindow(nullptr);
    view->tellPlaceChanged();
  }
}

void NSView::applyInterface(InterfaceDecoder& decoder) {
  autoresizing_mask_ = decoder.autoresizingMask();
  hidden_ = decoder.boolean("hidden", false);
  for (const Ref<NSView>& view : decoder.objects_as<NSView>("subviews"))
    addSubview(view.get());
}

void NSView::setFrame(NSRect frame) {
  setFrameOrigin(frame.origin);
  setFrameSize(frame.size);
}

void NSView::setFrameOrigin(NSPoint origin) {
  if (origin == frame_.origin)
    return;
  markAll();
  frame_.origin = origin;
  markAll();
}

void NSView::setFrameSize(NSSize size) {
  if (size == frame_.size)
    return;
  markAll();
  const NSSize old_size = frame_.size;
  frame_.size = size;
  for (const Ref<NSView>& view : subviews_)
    view->resizeInSuperview(old_size, size);
  markAll();
}

namespace {

/// How one axis follows: what the superview grew by is shared among the flexible margins and the extent.
void resize_axis(CGFloat growth, bool low_margin, bool extent, bool high_margin, CGFloat& origin,
                 CGFloat& size) {
  const int flexible = int{low_margin} + int{extent} + int{high_margin};
  if (flexible == 0)
    return;
  const CGFloat share = growth / static_cast<CGFloat>(flexible);
  if (low_margin)
    origin += share;
  if (extent)
    size = std::max<CGFloat>(0, size + share);
}

}  // namespace

void NSView::resizeInSuperview(NSSize old_size, NSSize new_size) {
  NSRect frame = frame_;
  const auto has = [this](unsigned bit) { return (autoresizing_mask_ & bit) != 0; };
  resize_axis(new_size.width - old_size.width, has(NSViewMinXMargin), has(NSViewWidthSizable),
              has(NSViewMaxXMargin), frame.origin.x, frame.size.width);
  resize_axis(new_size.height - old_size.height, has(NSViewMinYMargin), has(NSViewHeightSizable),
              has(NSViewMaxYMargin), frame.origin.y, frame.size.height);
  setFrame(frame);
}

void NSView::addSubview(NSView* view) {
  if (!view || isDescendantOf(view))
    return;
  const Ref<NSView> added(view);
  // The view may have been the last to hold this one.
  const Ref<NSView> self(this);
  if (view->superview_ == this) {
    std::erase_if(subviews_, [view](const Ref<NSView>& each) { return each.get() == view; });
    subviews_.push_back(added);
  } else {
    view->removeFromSuperview();
    view->superview_ = this;
    subviews_.push_back(added);
    view->moveToWindow(window_);
    view->tellPlaceChanged();
  }
  view->markAll();
}

void NSView::removeFromSuperview() {
  if (!superview_) {
    if (window_)
      window_->contentViewLeaves(this);
    return;
  }
  const Ref<NSView> self(this);
  markAll();
  std::erase_if(superview_->subviews_, [this](const Ref<NSView>& each) { return each.get() == this; });
  superview_ = nullptr;
  moveToWindow(nullptr);
  tellPlaceChanged();
}

bool NSView::isDescendantOf(const NSView* other) const {
  for (const NSView* view = this; view; view = view->superview_) {
    if (view == other)
      return true;
  }
  return false;
}

void NSView::moveToWindow(NSWindow* window) {
  if (window_ == window)
    return;
  if (window_)
    window_->viewLeft(this);
  window_ = window;
  viewDidMoveToWindow();
  // The list may change under a view that reacts to its new window.
  const std::vector<Ref<NSView>> views = subviews_;
  for (const Ref<NSView>& view : views) {
    if (view->superview_ == this)
      view->moveToWindow(window);
  }
}

void NSView::addPlaceObserver(const std::shared_ptr<NSViewPlaceObserver>& observer) {
  std::erase_if(place_observers_, [](const auto& each) { return each.expired(); });
  place_observers_.push_back(observer);
}

/// To the observers of the view and of all in it.
void NSView::tellPlaceChanged() {
  // They may let go of views, and of themselves.
  const std::vector<std::weak_ptr<NSViewPlaceObserver>> observers = place_observers_;
  const std::vector<Ref<NSView>> views = subviews_;
  for (const auto& each : observers) {
    if (const auto observer = each.lock())
      observer->viewPlaceChanged(*this);
  }
  for (const Ref<NSView>& view : views) {
    if (view->superview_ == this)
      view->tellPlaceChanged();
  }
}

void NSView::setHidden(bool hidden) {
  if (hidden_ == hidden)
    return;
  hidden_ = false;
  markAll();
  hidden_ = hidden;
}

void NSView::setNeedsDisplay(bool needed) {
  if (needed)
    markAll();
}

void NSView::markAll() {
  setNeedsDisplayInRect(bounds());
}

void NSView::setNeedsDisplayInRect(NSRect rect) {
  if (!window_)
    return;
  const NSRect visible = visibleRectInWindow(rect);
  if (!NSIsEmptyRect(visible))
    window_->setNeedsDisplayInRect(visible);
}

NSRect NSView::visibleRectInWindow(NSRect rect) const {
  for (const NSView* view = this; view; view = view->superview_) {
    if (view->hidden_)
      return {};
    rect = NSIntersectionRect(rect, view->bounds());
    rect = NSOffsetRect(rect, view->frame_.origin.x, view->frame_.origin.y);
  }
  return rect;
}

void NSView::drawTree(NSRect dirty) {
  const NSRect visible = NSIntersectionRect(dirty, bounds());
  if (hidden_ || NSIsEmptyRect(visible))
    return;
  const NSView* first = frontOpaqueCover(visible);
  draw(visible, first);
}

/// The front-most view that alone hides all that lies behind it in the rectangle; null when there is none.
const NSView* NSView::frontOpaqueCover(NSRect dirty) const {
  if (hidden_ || !contains(bounds(), dirty))
    return nullptr;
  for (size_t i = subviews_.size(); i-- > 0;) {
    const NSView* view = subviews_[i].get();
    const NSPoint origin = view->frame_.origin;
    if (const NSView* cover = view->frontOpaqueCover(NSOffsetRect(dirty, -origin.x, -origin.y)))
      return cover;
  }
  return isOpaque() ? this : nullptr;
}

/// Draws the tree from the view `first` on, which is then cleared; all of it when it is null already.
void NSView::draw(NSRect dirty, const NSView*& first) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  if (first == this)
    first = nullptr;
  if (!first) {
    CGContextSaveGState(context);
    CGContextClipToRect(context, touched_pixels(context, dirty));
    drawRect(dirty);
    CGContextRestoreGState(context);
  }
  for (const Ref<NSView>& view : subviews_) {
    const NSPoint origin = view->frame_.origin;
    const NSRect part = NSIntersectionRect(NSOffsetRect(dirty, -origin.x, -origin.y), view->bounds());
    if (view->hidden_ || NSIsEmptyRect(part))
      continue;
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, origin.x, origin.y);
    view->draw(part, first);
    CGContextRestoreGState(context);
  }
}

NSView* NSView::hitTest(NSPoint point) {
  if (hidden_ || !NSPointInRect(point, frame_))
    return nullptr;
  const NSPoint inside = {point.x - frame_.origin.x, point.y - frame_.origin.y};
  for (size_t i = subviews_.size(); i-- > 0;) {
    if (NSView* hit = subviews_[i]->hitTest(inside))
      return hit;
  }
  return this;
}

NSPoint NSView::originInWindow() const {
  NSPoint origin;
  for (const NSView* view = this; view; view = view->superview_) {
    origin.x += view->frame_.origin.x;
    origin.y += view->frame_.origin.y;
  }
  return origin;
}

NSPoint NSView::convertPoint_fromView(NSPoint point, const NSView* view) const {
  const NSPoint from = view ? view->originInWindow() : NSPoint{};
  const NSPoint here = originInWindow();
  return {point.x + from.x - here.x, point.y + from.y - here.y};
}

NSPoint NSView::convertPoint_toView(NSPoint point, const NSView* view) const {
  const NSPoint to = view ? view->originInWindow() : NSPoint{};
  const NSPoint here = originInWindow();
  return {point.x + here.x - to.x, point.y + here.y - to.y};
}

NSRect NSView::convertRect_toView(NSRect rect, const NSView* view) const {
  return {convertPoint_toView(rect.origin, view), rect.size};
}

NSResponder* NSView::nextResponder() const {
  if (superview_)
    return superview_;
  return window_;
}

}  // namespace cocoa
