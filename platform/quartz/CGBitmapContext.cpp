// SPDX-License-Identifier: MIT
#include "quartz/CGBitmapContext.h"

#include <climits>
#include <cmath>

#include "foundation/NSLog.h"
#include "quartz/private/context.h"
#include "quartz/private/png_file.h"

namespace cocoa {

namespace {

constexpr size_t bytes_a_pixel = 4;

constexpr size_t max_extent = 32767;

const PixelView& bitmap_of(CGContextRef context) {
  return context->targets.front().pixels;
}

}  // namespace

CGContextRef CGBitmapContextCreateWithScale(void* data, size_t width, size_t height, size_t bytes_per_row,
                                            double scale) {
  const size_t stride = data && bytes_per_row ? bytes_per_row : width * bytes_a_pixel;
  if (width > max_extent || height > max_extent || stride < width * bytes_a_pixel ||
      stride % bytes_a_pixel != 0 || stride > INT_MAX || !(scale > 0) || !std::isfinite(scale)) {
    NSLog("Error: couldn't create a bitmap context of %zu by %zu pixels.", width, height);
    return nullptr;
  }
  return new CGContext({static_cast<uint32_t*>(data),
                        stride / bytes_a_pixel,
                        {0, 0, static_cast<int>(width), static_cast<int>(height)}},
                       scale);
}

bool CGBitmapContextWritePNG(CGContextRef context, const char* path) {
  const Result<void> written =
      context && path ? write_png(bitmap_of(context), path) : Failure{"there is none"};
  if (!written)
    NSLog("Error: couldn't write the picture %s: %s.", path ? path : "", written.cause().c_str());
  return static_cast<bool>(written);
}

}  // namespace cocoa
