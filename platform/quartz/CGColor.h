// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"
#include "quartz/CGColorSpace.h"

/// A colour: components in a colour space, and alpha. Immutable, reference-counted; any thread.

namespace cocoa {

struct CGColor;
using CGColorRef = CGColor*;

/// `components` holds those of the space, then alpha, not premultiplied. The caller releases the result;
/// null without space or components.
CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components);
void CGColorRelease(CGColorRef color);

/// Valid as long as the colour is; null for null.
const CGFloat* CGColorGetComponents(CGColorRef color);

}  // namespace cocoa
