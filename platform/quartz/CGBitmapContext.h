// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "quartz/CGContext.h"

/// Contexts that draw into memory: 32-bit pixels in the machine's byte order, alpha in the highest byte,
/// then red, green and blue multiplied by it; the top row comes first.

namespace cocoa {

/// A context of width × height device pixels, `scale` of them a point: user space starts in points at the
/// lower left corner of the bitmap, and shadows keep their size in points. `data` must stay valid as long as
/// the context; null lets the context hold cleared memory of its own, and `bytes_per_row` 0 is the smallest
/// possible. Null, with a line in the log, for numbers that do not fit together. The caller releases the
/// result.
CGContextRef CGBitmapContextCreateWithScale(void* data, size_t width, size_t height, size_t bytes_per_row,
                                            double scale);

/// Writes the pixels as a PNG file; false, with a line in the log, when that fails.
bool CGBitmapContextWritePNG(CGContextRef context, const char* path);

}  // namespace cocoa
