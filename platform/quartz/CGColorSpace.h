// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// What the components of a colour mean. Reference-counted; counting is safe from any thread, as spaces
/// are shared by all editors of a process. All functions accept null.

namespace cocoa {

struct CGColorSpace;
using CGColorSpaceRef = CGColorSpace*;

/// A new reference that the caller releases: grey level, red-green-blue, or cyan-magenta-yellow-black,
/// components 0 to 1.
CGColorSpaceRef CGColorSpaceCreateDeviceGray();
CGColorSpaceRef CGColorSpaceCreateDeviceRGB();
CGColorSpaceRef CGColorSpaceCreateDeviceCMYK();

CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space);
void CGColorSpaceRelease(CGColorSpaceRef space);

/// Without alpha: 1, 3 or 4; 0 for null.
size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space);

}  // namespace cocoa
