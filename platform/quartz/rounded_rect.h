// SPDX-License-Identifier: MIT
#pragma once

#include "quartz/CGContext.h"

namespace cocoa {

/// Adds a closed rectangle to the path whose corners are quarters of an ellipse of that width and height, in
/// user space, from the middle of the right side counter-clockwise. With a width or height of 0 the corners
/// are square.
void add_rounded_rect(CGContextRef context, CGRect rect, CGFloat oval_width, CGFloat oval_height);

}  // namespace cocoa
