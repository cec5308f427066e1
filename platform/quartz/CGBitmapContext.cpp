#include "quartz/CGBitmapContext.h"

#include <cairo.h>

#include <climits>
#include <cmath>

#include "foundation/NSLog.h"
#include "quartz/context.h"

namespace cocoa {

namespace {

constexpr size_t bytes_a_pixel = 4;

/// Null for sizes that Cairo has no images of.
Surface surface_for(void* data, size_t width, size_t height, size_t bytes_per_row) {
  constexpr size_t max_extent = 32767;
  if (width > max_extent || height > max_extent)
    return nullptr;
  const auto columns = static_cast<int>(width);
  const auto rows = static_cast<int>(height);
  if (!data)
    return Surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, columns, rows));
  const size_t stride = bytes_per_row ? bytes_per_row : width * bytes_a_pixel;
  if (stride < width * bytes_a_pixel || stride % bytes_a_pixel != 0 || stride > INT_MAX)
    return nullptr;
  return Surface(cairo_image_surface_create_for_data(static_cast<unsigned char*>(data), CAIRO_FORMAT_ARGB32,
                                                     columns, rows, static_cast<int>(stride)));
}

cairo_surface_t* bitmap_of(CGContextRef context) {
  return context ? context->targets.front().surface.get() : nullptr;
}

}  // namespace

CGContextRef CGBitmapContextCreateWithScale(void* data, size_t width, size_t height, size_t bytes_per_row,
                                            double scale) {
  Surface surface = surface_for(data, width, height, bytes_per_row);
  const bool usable = surface && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
  CGContextRef context =
      usable && scale > 0 && std::isfinite(scale) ? CGContextCreateOn(std::move(surface), scale) : nullptr;
  if (!context)
    NSLog("Error: couldn't create a bitmap context of %zu by %zu pixels.", width, height);
  return context;
}

CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space, uint32_t bitmapInfo) {
  if (bitsPerComponent != 8 || !space || space->model != ColorModel::rgb ||
      bitmapInfo != (kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Host)) {
    NSLog("Error: bitmap contexts have 8 bits a component, device RGB and premultiplied alpha first.");
    return nullptr;
  }
  return CGBitmapContextCreateWithScale(data, width, height, bytesPerRow, 1);
}

void* CGBitmapContextGetData(CGContextRef context) {
  return context ? cairo_image_surface_get_data(bitmap_of(context)) : nullptr;
}
size_t CGBitmapContextGetWidth(CGContextRef context) {
  return context ? static_cast<size_t>(cairo_image_surface_get_width(bitmap_of(context))) : 0;
}
size_t CGBitmapContextGetHeight(CGContextRef context) {
  return context ? static_cast<size_t>(cairo_image_surface_get_height(bitmap_of(context))) : 0;
}
size_t CGBitmapContextGetBytesPerRow(CGContextRef context) {
  return context ? static_cast<size_t>(cairo_image_surface_get_stride(bitmap_of(context))) : 0;
}

bool CGBitmapContextWritePNG(CGContextRef context, const char* path) {
  const cairo_status_t status =
      context && path ? cairo_surface_write_to_png(bitmap_of(context), path) : CAIRO_STATUS_NULL_POINTER;
  if (status != CAIRO_STATUS_SUCCESS)
    NSLog("Error: couldn't write the picture %s: %s.", path ? path : "", cairo_status_to_string(status));
  return status == CAIRO_STATUS_SUCCESS;
}

}  // namespace cocoa
