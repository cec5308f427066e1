#include <algorithm>
#include <cmath>
#include <utility>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "foundation/NSLog.h"
#include "foundation/available_memory.h"
#include "quartz/CGBitmapContext.h"
#include "windows/pixel_geometry.h"

namespace cocoa {

namespace {

/// What shows where no view of an opaque window paints.
constexpr CGFloat background_grey = CGFloat(0.93);
/// What shows around a content of other proportions than its window.
constexpr CGFloat surroundings_grey = CGFloat(0.2);

// Of windows, in points: as if lit from above.
constexpr CGFloat shadow_blur = 8;
constexpr CGFloat shadow_drop = 3;
constexpr CGFloat shadow_alpha = 0.75;
constexpr CGFloat shadow_room = shadow_blur + shadow_drop;

/// What drawing takes besides the window's own pixels: for each that is drawn anew, the layers and shadows
/// over it; and fonts.
constexpr size_t bytes_a_pixel = 32;
constexpr size_t bytes_besides = 8UL << 20U;

void set_shadow(CGContextRef context) {
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  constexpr CGFloat components[] = {0, 0, 0, shadow_alpha};
  CGColorRef black = CGColorCreate(space, components);
  CGContextSetShadowWithColor(context, {0, -shadow_drop}, shadow_blur, black);
  CGColorRelease(black);
  CGColorSpaceRelease(space);
}

}  // namespace

void NSWindow::setContentScalesToFit() {
  scales_to_fit_ = true;
  fitContent();
  markAll();
}

bool NSWindow::followsParent() const {
  return parent_ && parent_->platform_ && style_mask_ == NSBorderlessWindowMask;
}

/// Where the window system is to put the window, with the room for its shadow. A borderless child goes by
/// where its parent really is: a host moves its window without telling the one inside, and scales it.
NSRect NSWindow::frameOnScreen() const {
  const CGFloat room = castsShadow() ? shadow_room : 0;
  const NSRect frame = NSInsetRect(frame_, -room, -room);
  if (!followsParent())
    return frame;
  const NSPoint parent = parent_->platform_->screenFrame().origin;
  const auto fit = static_cast<CGFloat>(parent_->fit_);
  const CGFloat x = frame.origin.x - parent_->frame_.origin.x + parent_->fit_origin_.x;
  const CGFloat y = frame.origin.y - parent_->frame_.origin.y + parent_->fit_origin_.y;
  return {{parent.x + x * fit, parent.y + y * fit}, {frame.size.width * fit, frame.size.height * fit}};
}

/// The parent is somewhere else, or draws its content in another size.
void NSWindow::followParent() {
  if (!platform_ || !followsParent())
    return;
  platform_->setFrame(frameOnScreen());
  fitContent();
  markAll();
  for (const Ref<NSWindow>& child : children_)
    child->followParent();
}

/// Makes the content as large as the window allows and puts it into the middle; that of a child as large as
/// its parent's.
void NSWindow::fitContent() {
  if (!platform_)
    return;
  if (!scales_to_fit_) {
    const CGFloat room = castsShadow() ? shadow_room : 0;
    fit_ = followsParent() ? parent_->fit_ : 1;
    fit_origin_ = {room, room};
    return;
  }
  const NSSize given = platform_->frame().size;
  const NSSize content = frame_.size;
  if (NSIsEmptyRect({{}, given}) || NSIsEmptyRect({{}, content}))
    return;
  const CGFloat fit = std::min(given.width / content.width, given.height / content.height);
  fit_ = static_cast<double>(fit);
  // From a whole pixel on, so that it is as sharp as in a window of just its size.
  const double scale = backingScaleFactor();
  const auto margin = [fit, scale](CGFloat given_extent, CGFloat extent) {
    constexpr double noise = 1.0 / 256;
    const double pixels = static_cast<double>((given_extent / fit - extent) / 2) * scale;
    return static_cast<CGFloat>(std::floor(pixels + noise) / scale);
  };
  fit_origin_ = {margin(given.width, content.width), margin(given.height, content.height)};
  for (const Ref<NSWindow>& child : children_)
    child->followParent();
}

/// An event of the window system in points of the content.
WindowEvent NSWindow::inContent(WindowEvent event) const {
  if (fit_ == 1 && fit_origin_ == NSPoint{})
    return event;
  const auto fit = static_cast<CGFloat>(fit_);
  event.location = {event.location.x / fit - fit_origin_.x, event.location.y / fit - fit_origin_.y};
  if (event.type != WindowEventType::scroll_wheel) {
    event.delta_x /= fit;
    event.delta_y /= fit;
  }
  return event;
}

void NSWindow::setNeedsDisplayInRect(NSRect rect) {
  if (!platform_)
    return;
  const PixelSize size = pixelSize();
  damage_.add(device_pixels(NSOffsetRect(rect, fit_origin_.x, fit_origin_.y), backingScaleFactor(),
                            size.width, size.height));
}

/// Everything, what lies around the content included.
void NSWindow::markAll() {
  if (!platform_)
    return;
  const PixelSize size = pixelSize();
  damage_.add({0, 0, size.width, size.height});
}

NSWindow::PixelSize NSWindow::pixelSize() const {
  const NSSize size = platform_->frame().size;
  const double scale = platform_->scale();
  return {device_pixels(size.width, scale), device_pixels(size.height, scale)};
}

bool NSWindow::hasMemoryToDraw() {
  size_t pixels = 0;
  for (const PixelRect& rect : damage_.rects())
    pixels += static_cast<size_t>(rect.width) * static_cast<size_t>(rect.height);
  const bool lacked_memory =
      std::exchange(lacks_memory_, !has_memory(pixels * bytes_a_pixel + bytes_besides));
  if (lacks_memory_ && !lacked_memory)
    NSLog("There is no memory to draw %zu pixels of the window \"%.64s\" with.", pixels, title_.c_str());
  return !lacks_memory_;
}

void NSWindow::displayIfNeeded() {
  if (!platform_ || damage_.empty() || !platform_->viewable() || !hasMemoryToDraw())
    return;
  const Pixels pixels = platform_->pixels();
  // The window system still reads the last frame; it asks for another turn when it is done.
  if (!pixels)
    return;
  CGContextRef context = contextFor(pixels);
  if (!context)
    return;
  // All of the content shapes every part of its shadow.
  if (castsShadow())
    markAll();
  // What views mark while they draw is for the next turn.
  const Damage drawn = std::exchange(damage_, Damage());
  for (const PixelRect& rect : drawn.rects())
    draw(context, pixels, rect);
  platform_->present(drawn.rects());
}

/// The context that draws into these pixels, kept from frame to frame.
CGContextRef NSWindow::contextFor(const Pixels& pixels) {
  const double scale = backingScaleFactor();
  if (context_ && context_pixels_ == pixels && context_scale_ == scale)
    return context_;
  CGContextRelease(context_);
  context_ = CGBitmapContextCreateWithScale(pixels.data, static_cast<size_t>(pixels.width),
                                            static_cast<size_t>(pixels.height), pixels.bytes_per_row, scale);
  context_pixels_ = pixels;
  context_scale_ = scale;
  return context_;
}

void NSWindow::draw(CGContextRef context, const Pixels& pixels, const PixelRect& rect) {
  const double scale = context_scale_;
  const int from_bottom = pixels.height - rect.y - rect.height;
  const NSRect damaged =
      NSMakeRect(static_cast<CGFloat>(rect.x / scale), static_cast<CGFloat>(from_bottom / scale),
                 static_cast<CGFloat>(rect.width / scale), static_cast<CGFloat>(rect.height / scale));
  CGContextSaveGState(context);
  CGContextClipToRect(context, damaged);
  const CGFloat grey = scales_to_fit_ ? surroundings_grey : background_grey;
  if (!opaque_) {
    CGContextClearRect(context, damaged);
  } else if (scales_to_fit_ || !content_view_->isOpaque()) {
    CGContextSetRGBFillColor(context, grey, grey, grey, 1);
    CGContextFillRect(context, damaged);
  }
  CGContextTranslateCTM(context, fit_origin_.x, fit_origin_.y);
  drawContent(context, NSOffsetRect(damaged, -fit_origin_.x, -fit_origin_.y));
  CGContextRestoreGState(context);
}

void NSWindow::drawContent(CGContextRef context, NSRect damaged) {
  const NSGraphicsContext::Scope scope(context);
  if (castsShadow()) {
    set_shadow(context);
    CGContextBeginTransparencyLayer(context, nullptr);
  }
  content_view_->drawTree(damaged);
  if (castsShadow())
    CGContextEndTransparencyLayer(context);
}

void NSWindow::drawWithChildren(CGContextRef context) {
  CGContextSaveGState(context);
  drawContent(context, content_view_->bounds());
  CGContextRestoreGState(context);
  for (const Ref<NSWindow>& child : children_) {
    if (!child->visible_)
      continue;
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, child->frame_.origin.x - frame_.origin.x,
                          child->frame_.origin.y - frame_.origin.y);
    child->drawWithChildren(context);
    CGContextRestoreGState(context);
  }
}

}  // namespace cocoa
