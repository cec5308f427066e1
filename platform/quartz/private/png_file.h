// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Result.h"
#include "quartz/private/compositor.h"

/// Pictures in files.

namespace cocoa {

/// Writes pixels as a PNG file, without an alpha channel when all are opaque. What the path
/// names stays there after an error too. A signal that is handled without
/// SA_RESTART ends the waiting for a FIFO's reader, as an error.
Result<void> write_png(const PixelView& pixels, const char* path);

}  // namespace cocoa
