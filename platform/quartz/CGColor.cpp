// SPDX-License-Identifier: MIT
#include "quartz/CGColor.h"

#include "quartz/private/color_model.h"

namespace cocoa {

CGColorSpaceRef CGColorSpaceCreateDeviceGray() {
  return new CGColorSpace(ColorModel::gray);
}
CGColorSpaceRef CGColorSpaceCreateDeviceRGB() {
  return new CGColorSpace(ColorModel::rgb);
}
CGColorSpaceRef CGColorSpaceCreateDeviceCMYK() {
  return new CGColorSpace(ColorModel::cmyk);
}
CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space) {
  return retain_counted(space);
}
void CGColorSpaceRelease(CGColorSpaceRef space) {
  release_counted(space);
}
size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space) {
  return space ? component_count(space->model) : 0;
}

CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components) {
  return space && components ? new CGColor(space, components) : nullptr;
}
void CGColorRelease(CGColorRef color) {
  release_counted(color);
}
const CGFloat* CGColorGetComponents(CGColorRef color) {
  return color ? color->components.data() : nullptr;
}

}  // namespace cocoa
