// SPDX-License-Identifier: MIT
#pragma once

#include "drawing/shading.h"

/// The look that labels, buttons, readouts and graphs share: a dark bar whose two short ends are half
/// ellipses, with a soft band of glass across its middle. Classes give their own rectangles, colours and
/// rules.

namespace ondex {

/// The width of an end cap in points.
inline constexpr cocoa::CGFloat cap_width = 5;

/// The cap at the left and at the right of a view's bounds, and what lies between them.
cocoa::NSRect left_cap_rect(cocoa::NSRect bounds, cocoa::CGFloat width = cap_width);
cocoa::NSRect right_cap_rect(cocoa::NSRect bounds, cocoa::CGFloat width = cap_width);
cocoa::NSRect middle_rect(cocoa::NSRect bounds, cocoa::CGFloat width = cap_width);

/// Of a capsule that is not selected: black at the inner edge, dark grey at the tip.
inline constexpr two_color_info plain_cap_colors = greys(0, 1, 0.25, 1);
/// Passed with rules that do not read them.
inline constexpr two_color_info body_colors = greys(0.75, 1, 0.75, 1);
inline constexpr two_color_info shine_colors = greys(1, 0, 1, 1);

/// Draws half of an ellipse twice the cap's width, t running from the inner edge to the tip.
void fill_left_cap(cocoa::CGContextRef context, cocoa::NSRect cap, const two_color_info& colors);
void fill_right_cap(cocoa::CGContextRef context, cocoa::NSRect cap, const two_color_info& colors);

}  // namespace ondex
