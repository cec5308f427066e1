// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <algorithm>

#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "drawing/text_attributes.h"

namespace ondex::test {

using namespace cocoa;

namespace {
constexpr CGFloat sheet_width = 900;
constexpr CGFloat gap = 20;
constexpr CGFloat caption_height = 16;
}  // namespace

Sheet::Sheet(CGFloat height)
    : NSView(NSMakeRect(0, 0, sheet_width, height)), left_(gap), top_(height - gap) {}

void Sheet::show(NSView* view, std::string_view caption) {
  const NSSize size = view->frame().size;
  if (left_ + size.width + gap > sheet_width)
    end_row();
  view->setFrameOrigin({left_, top_ - size.height});
  addSubview(view);
  captions_.push_back(
      {std::string(caption), NSMakeRect(left_ - gap / 2, top_ - size.height - caption_height - 2,
                                        size.width + gap, caption_height)});
  left_ += size.width + gap;
  row_height_ = std::max(row_height_, size.height);
}

void Sheet::end_row() {
  left_ = gap;
  top_ -= row_height_ + caption_height + gap;
  row_height_ = 0;
}

void Sheet::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  CGContextSetRGBFillColor(context, CGFloat(0.72), CGFloat(0.5), CGFloat(0.4), 1);
  CGContextFillRect(context, bounds());
  const auto attributes =
      centred_text_attributes(NSFont::systemFontOfSize(9).get(), NSColor::blackColor().get());
  for (const Caption& caption : captions_) {
    drawInRect_withAttributes(make<NSString>(caption.text).get(), caption.rect, attributes.get());
  }
}

Ref<NSColor> rgb(double r, double g, double b, double a) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(r), static_cast<CGFloat>(g),
                                                      static_cast<CGFloat>(b), static_cast<CGFloat>(a));
}

}  // namespace ondex::test
