// SPDX-License-Identifier: MIT
#include "appkit/NSStringDrawing.h"

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "quartz/text.h"

namespace cocoa {

const Class NSMutableParagraphStyle::class_ = {.name = "NSMutableParagraphStyle",
                                               .superclass = &NSObject::class_};

Ref<NSMutableParagraphStyle> NSMutableParagraphStyle::defaultParagraphStyle() {
  return make<NSMutableParagraphStyle>();
}

namespace {

constexpr double default_size = 12;

template <typename T>
const T* attribute(const NSMutableDictionary* attributes, std::string_view key) {
  return attributes ? dynamic_cast<const T*>(attributes->objectForKey(key)) : nullptr;
}

TextAlignment text_alignment(NSTextAlignment alignment) {
  switch (alignment) {
    case NSRightTextAlignment:
      return TextAlignment::right;
    case NSCenterTextAlignment:
      return TextAlignment::center;
    case NSJustifiedTextAlignment:
      return TextAlignment::justified;
    default:
      return TextAlignment::left;
  }
}

TextStyle style_of(const NSMutableDictionary* attributes) {
  TextStyle style;
  style.size = default_size;
  style.alpha = 1;
  if (const auto* font = attribute<NSFont>(attributes, NSFontAttributeName)) {
    style.size = static_cast<double>(font->pointSize());
    style.bold = font->isBold();
  }
  if (const auto* paragraph = attribute<NSMutableParagraphStyle>(attributes, NSParagraphStyleAttributeName)) {
    style.alignment = text_alignment(paragraph->alignment());
  }
  if (const auto* color = attribute<NSColor>(attributes, NSForegroundColorAttributeName)) {
    style.red = static_cast<double>(color->redComponent());
    style.green = static_cast<double>(color->greenComponent());
    style.blue = static_cast<double>(color->blueComponent());
    style.alpha = static_cast<double>(color->alphaComponent());
  }
  return style;
}

}  // namespace

void drawInRect_withAttributes(const NSString* text, NSRect rect, const NSMutableDictionary* attributes) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!text || !context)
    return;
  CGContextDrawText(context->graphicsPort(), rect, text->view(), style_of(attributes));
}

NSSize sizeWithAttributes(const NSString* text, const NSMutableDictionary* attributes) {
  return text ? text_size(text->view(), style_of(attributes)) : NSSize{};
}

}  // namespace cocoa
