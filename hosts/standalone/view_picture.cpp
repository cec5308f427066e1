#include "standalone/view_picture.h"

#include <cmath>
#include <functional>
#include <vector>

#include "appkit/NSGraphicsContext.h"
#include "quartz/CGBitmapContext.h"

namespace ondex {

using namespace cocoa;

namespace {

bool write_picture(NSSize size, double scale, const std::function<void(CGContextRef)>& draw,
                   const char* path) {
  const auto width = static_cast<size_t>(std::ceil(static_cast<double>(size.width) * scale));
  const auto height = static_cast<size_t>(std::ceil(static_cast<double>(size.height) * scale));
  std::vector<uint8_t> pixels(width * height * 4);
  CGContextRef context = CGBitmapContextCreateWithScale(pixels.data(), width, height, width * 4, scale);
  draw(context);
  const bool written = CGBitmapContextWritePNG(context, path);
  CGContextRelease(context);
  return written;
}

}  // namespace

bool write_view_picture(NSView& view, double scale, const char* path) {
  const auto draw = [&](CGContextRef context) {
    const NSGraphicsContext::Scope scope(context);
    view.drawTree(view.bounds());
  };
  return write_picture(view.bounds().size, scale, draw, path);
}

bool write_window_picture(NSWindow& window, const char* path) {
  const auto draw = [&](CGContextRef context) { window.drawWithChildren(context); };
  return write_picture(window.contentView()->bounds().size, window.backingScaleFactor(), draw, path);
}

}  // namespace ondex
