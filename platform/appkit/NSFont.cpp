// SPDX-License-Identifier: MIT
#include "appkit/NSFont.h"

#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSFont::class_ = {
    .name = "NSFont", .superclass = &NSObject::class_, .initWithInterface = [](InterfaceDecoder& decoder) {
      return Ref<NSObject>(make<NSFont>(decoder));
    }};

namespace {
constexpr CGFloat standard_size = 13;

constexpr std::string_view meta_fonts[] = {"system",          "systemBold", "smallSystem",
                                           "smallSystemBold", "miniSystem", "miniSystemBold"};
constexpr double meta_sizes[] = {13, 13, 11, 11, 9, 9};
CGFloat size_or_standard(CGFloat size) {
  return size > 0 ? size : standard_size;
}
}  // namespace

NSFont::NSFont(InterfaceDecoder& decoder) {
  const size_t face = decoder.choice("metaFont", meta_fonts, 0);
  size_ = size_or_standard(static_cast<CGFloat>(decoder.number("size", meta_sizes[face])));
  bold_ = face % 2 == 1;
}

Ref<NSFont> NSFont::systemFontOfSize(CGFloat size) {
  return make<NSFont>(size_or_standard(size), false);
}
Ref<NSFont> NSFont::boldSystemFontOfSize(CGFloat size) {
  return make<NSFont>(size_or_standard(size), true);
}
Ref<NSFont> NSFont::titleBarFontOfSize(CGFloat size) {
  return boldSystemFontOfSize(size);
}

}  // namespace cocoa
