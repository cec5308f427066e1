#pragma once

#include "appkit/NSWindow.h"

namespace ondex {

/// Writes what a view and its subviews draw, at `scale` device pixels a point, to a PNG file; false, after a
/// line in the log, when that fails.
bool write_view_picture(cocoa::NSView& view, double scale, const char* path);

/// The same of what a window shows in its content's area, its child windows included, in its own pixels.
bool write_window_picture(cocoa::NSWindow& window, const char* path);

}  // namespace ondex
