// SPDX-License-Identifier: MIT
#include "drawing/text_attributes.h"

#include "appkit/NSStringDrawing.h"

namespace ondex {

using namespace cocoa;

Ref<NSMutableDictionary> centred_text_attributes(NSFont* font, NSColor* color) {
  const auto style = NSMutableParagraphStyle::defaultParagraphStyle();
  style->setAlignment(NSCenterTextAlignment);
  auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(font, NSFontAttributeName);
  attributes->setObject_forKey(style.get(), NSParagraphStyleAttributeName);
  attributes->setObject_forKey(color, NSForegroundColorAttributeName);
  return attributes;
}

}  // namespace ondex
