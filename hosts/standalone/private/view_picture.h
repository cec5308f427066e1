// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSWindow.h"

namespace ondex {

/// Writes what a view and its subviews draw, at `scale` device pixels a point, to a PNG file; false, after a
/// line in the log, when that fails.
bool write_view_picture(cocoa::NSView& view, double scale, const char* path);

/// Whether the window or one of its child windows has something to draw that is soon to be seen.
bool is_about_to_show(const cocoa::NSWindow& window);

/// The same of what a window shows: its pixels, with those of its child windows over them as far as they lie
/// within it. One that nobody can see is drawn for the picture.
bool write_window_picture(cocoa::NSWindow& window, const char* path);

}  // namespace ondex
