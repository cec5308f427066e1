#include <algorithm>
#include <cmath>
#include <utility>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "quartz/CGBitmapContext.h"

namespace cocoa {

namespace {

/// What shows where no view of an opaque window paints.
constexpr CGFloat background_grey = CGFloat(0.93);
/// What shows around a content of other proportions than its window.
constexpr CGFloat surroundings_grey = CGFloat(0.2);

}  // namespace

void NSWindow::setContentScalesToFit() {
  scales_to_fit_ = true;
  fitContent();
  markAll();
}

/// Makes the content as large as the window allows and puts it into the middle.
void NSWindow::fitContent() {
  if (!platform_ || !scales_to_fit_)
    return;
  const NSSize given = platform_->frame().size;
  const NSSize content = frame_.size;
  if (NSIsEmptyRect({{}, given}) || NSIsEmptyRect({{}, content}))
    return;
  const CGFloat fit = std::min(given.width / content.width, given.height / content.height);
  fit_ = static_cast<double>(fit);
  fit_origin_ = {(given.width / fit - content.width) / 2, (given.height / fit - content.height) / 2};
}

/// An event of the window system in points of the content.
WindowEvent NSWindow::inContent(WindowEvent event) const {
  if (!scales_to_fit_)
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
  const auto extent = [this](CGFloat points) {
    return static_cast<int>(std::ceil(static_cast<double>(points) * platform_->scale()));
  };
  return {extent(size.width), extent(size.height)};
}

void NSWindow::displayIfNeeded() {
  if (!platform_ || damage_.empty() || !platform_->viewable())
    return;
  const Pixels pixels = platform_->pixels();
  // The window system still reads the last frame; it asks for another turn when it is done.
  if (!pixels)
    return;
  CGContextRef context = contextFor(pixels);
  if (!context)
    return;
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
  const NSGraphicsContext::Scope scope(context);
  content_view_->drawTree(NSOffsetRect(damaged, -fit_origin_.x, -fit_origin_.y));
  CGContextRestoreGState(context);
}

}  // namespace cocoa
