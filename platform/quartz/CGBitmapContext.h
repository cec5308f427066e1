#pragma once

#include <cstddef>
#include <cstdint>

#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"

/// Contexts that draw into memory: 32-bit pixels in the machine's byte order, alpha in the highest byte,
/// then red, green and blue multiplied by it; the top row comes first.

namespace cocoa {

inline constexpr uint32_t kCGImageAlphaPremultipliedFirst = 2;
inline constexpr uint32_t kCGBitmapByteOrder32Little = 2U << 12;
inline constexpr uint32_t kCGBitmapByteOrder32Host = kCGBitmapByteOrder32Little;

/// A context of width × height pixels, one a point. `data` must stay valid as long as the context; null lets
/// the context hold cleared memory of its own, and `bytesPerRow` 0 is the smallest possible. Only 8 bits a
/// component in device RGB with kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Host are there:
/// anything else is logged and gives null. The caller releases the result.
CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space, uint32_t bitmapInfo);

/// The same with `scale` device pixels a point: width and height count device pixels, user space starts in
/// points at the lower left corner of the bitmap, and shadows keep their size in points.
CGContextRef CGBitmapContextCreateWithScale(void* data, size_t width, size_t height, size_t bytes_per_row,
                                            double scale);

void* CGBitmapContextGetData(CGContextRef context);
size_t CGBitmapContextGetWidth(CGContextRef context);
size_t CGBitmapContextGetHeight(CGContextRef context);
size_t CGBitmapContextGetBytesPerRow(CGContextRef context);

/// Writes the pixels as a PNG file; false, with a line in the log, when that fails.
bool CGBitmapContextWritePNG(CGContextRef context, const char* path);

}  // namespace cocoa
