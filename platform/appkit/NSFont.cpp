#include "appkit/NSFont.h"

namespace cocoa {

const Class NSFont::class_ = {.name = "NSFont", .superclass = &NSObject::class_};

namespace {
constexpr CGFloat standard_size = 13;
CGFloat size_or_standard(CGFloat size) {
  return size > 0 ? size : standard_size;
}
}  // namespace

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
