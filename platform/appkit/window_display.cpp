// SPDX-License-Identifier: MIT
#include "appkit/private/window_display.h"

#include <utility>

#include "appkit/NSGraphicsContext.h"
#include "appkit/private/NSWindow_parts.h"
#include "foundation/NSLog.h"
#include "foundation/available_memory.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/CGOwned.h"
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
static_assert(WindowDisplay::shadow_room == shadow_blur + shadow_drop);

/// What drawing takes besides the window's own pixels: for each that is drawn anew, the layers and shadows
/// over it; and fonts.
constexpr size_t bytes_a_pixel = 32;
constexpr size_t bytes_besides = 8UL << 20U;

void set_shadow(CGContextRef context) {
  const CGOwned<CGColorSpace> space(CGColorSpaceCreateDeviceRGB());
  constexpr CGFloat components[] = {0, 0, 0, shadow_alpha};
  const CGOwned<CGColor> black(CGColorCreate(space.get(), components));
  CGContextSetShadowWithColor(context, {0, -shadow_drop}, shadow_blur, black.get());
}

}  // namespace

void WindowDisplay::mark(NSRect content_rect) {
  if (!window_.platform_)
    return;
  const PixelSize size = pixelSize();
  const NSPoint origin = window_.parts_->place.fit().origin();
  damage_.add(device_pixels(NSOffsetRect(content_rect, origin.x, origin.y), window_.backingScaleFactor(),
                            size.width, size.height));
}

void WindowDisplay::markAll() {
  if (!window_.platform_)
    return;
  const PixelSize size = pixelSize();
  damage_.add({0, 0, size.width, size.height});
}

WindowDisplay::PixelSize WindowDisplay::pixelSize() const {
  const NSSize size = window_.platform_->frame().size;
  const double scale = window_.platform_->scale();
  return {device_pixels(size.width, scale), device_pixels(size.height, scale)};
}

void WindowDisplay::forget() {
  context_.reset();
  context_pixels_ = {};
  damage_ = Damage();
}

bool WindowDisplay::hasMemoryToDraw() {
  size_t pixels = 0;
  for (const PixelRect& rect : damage_.rects())
    pixels += static_cast<size_t>(rect.width) * static_cast<size_t>(rect.height);
  const bool lacked_memory =
      std::exchange(lacks_memory_, !has_memory(pixels * bytes_a_pixel + bytes_besides));
  if (lacks_memory_ && !lacked_memory) {
    NSLog("There is no memory to draw %zu pixels of the window \"%.64s\" with.", pixels,
          window_.title().c_str());
  }
  return !lacks_memory_;
}

void WindowDisplay::displayIfNeeded() {
  PlatformWindow* const platform = window_.platformWindow();
  if (!platform || damage_.empty() || !platform->viewable() || !hasMemoryToDraw())
    return;
  const Pixels pixels = platform->pixels();
  // The window system still reads the last frame; it asks for another pass when it is done.
  if (!pixels)
    return;
  CGContextRef context = contextFor(pixels);
  if (!context)
    return;
  // All of the content shapes every part of its shadow.
  if (window_.castsShadow())
    markAll();
  // What views mark while they draw is for the next pass.
  const Damage drawn = std::exchange(damage_, Damage());
  for (const PixelRect& rect : drawn.rects())
    draw(context, pixels, rect);
  platform->present(drawn.rects());
}

/// The context that draws into these pixels, kept from frame to frame.
CGContextRef WindowDisplay::contextFor(const Pixels& pixels) {
  const double scale = window_.backingScaleFactor();
  if (context_ && context_pixels_ == pixels && context_scale_ == scale)
    return context_.get();
  context_.reset();
  context_.reset(CGBitmapContextCreateWithScale(pixels.data, static_cast<size_t>(pixels.width),
                                                static_cast<size_t>(pixels.height), pixels.bytes_per_row,
                                                scale));
  context_pixels_ = pixels;
  context_scale_ = scale;
  return context_.get();
}

void WindowDisplay::draw(CGContextRef context, const Pixels& pixels, const PixelRect& rect) const {
  const double scale = context_scale_;
  const int from_bottom = pixels.height - rect.y - rect.height;
  const NSRect damaged =
      NSMakeRect(static_cast<CGFloat>(rect.x / scale), static_cast<CGFloat>(from_bottom / scale),
                 static_cast<CGFloat>(rect.width / scale), static_cast<CGFloat>(rect.height / scale));
  CGContextSaveGState(context);
  CGContextClipToRect(context, damaged);
  const ContentFit& fit = window_.parts_->place.fit();
  const CGFloat grey = fit.scales() ? surroundings_grey : background_grey;
  if (!window_.isOpaque()) {
    CGContextClearRect(context, damaged);
  } else if (fit.scales() || !window_.contentView()->isOpaque()) {
    CGContextSetRGBFillColor(context, grey, grey, grey, 1);
    CGContextFillRect(context, damaged);
  }
  CGContextTranslateCTM(context, fit.origin().x, fit.origin().y);
  drawContent(context, NSOffsetRect(damaged, -fit.origin().x, -fit.origin().y));
  CGContextRestoreGState(context);
}

void WindowDisplay::drawContent(CGContextRef context, NSRect damaged) const {
  const NSGraphicsContext::Scope scope(context);
  if (window_.castsShadow()) {
    set_shadow(context);
    CGContextBeginTransparencyLayer(context, nullptr);
  }
  window_.contentView()->drawTree(damaged);
  if (window_.castsShadow())
    CGContextEndTransparencyLayer(context);
}

}  // namespace cocoa
