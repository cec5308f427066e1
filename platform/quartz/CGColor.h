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
CGColorRef CGColorRetain(CGColorRef color);
void CGColorRelease(CGColorRef color);

/// Valid as long as the colour is; null for null.
const CGFloat* CGColorGetComponents(CGColorRef color);
/// With alpha; 0 for null.
size_t CGColorGetNumberOfComponents(CGColorRef color);
CGFloat CGColorGetAlpha(CGColorRef color);
/// Not retained for the caller.
CGColorSpaceRef CGColorGetColorSpace(CGColorRef color);

}  // namespace cocoa
