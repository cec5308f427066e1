#include <algorithm>
#include <cmath>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"

namespace cocoa {

namespace {

constexpr CGFloat side_margin = 3;  // between the text and the sides, points
constexpr CGFloat caret_width = 1;
/// Of the selection, which lies behind the text in the text's colour.
constexpr CGFloat selection_alpha = CGFloat(0.33);
constexpr CGFloat idle_selection_alpha = CGFloat(0.15);
/// The frame of a text that is refused.
constexpr CGFloat refusal[3] = {CGFloat(1.0), CGFloat(0.25), CGFloat(0.2)};

void set_fill(CGContextRef context, const NSColor& color, CGFloat alpha) {
  CGContextSetRGBFillColor(context, color.redComponent(), color.greenComponent(), color.blueComponent(),
                           color.alphaComponent() * alpha);
}

}  // namespace

TextStyle NSTextField::textStyle() const {
  TextStyle style;
  style.size = static_cast<double>(cell_->font->pointSize());
  style.bold = cell_->font->isBold();
  style.alignment = TextAlignment::left;
  style.line_break = LineBreak::clip;
  style.red = static_cast<double>(cell_->text_color->redComponent());
  style.green = static_cast<double>(cell_->text_color->greenComponent());
  style.blue = static_cast<double>(cell_->text_color->blueComponent());
  style.alpha = static_cast<double>(cell_->text_color->alphaComponent());
  return style;
}

/// Of one line in the middle of the field; an empty text is as high as any.
NSRect NSTextField::textRect() const {
  const NSRect inside = NSInsetRect(bounds(), side_margin, 0);
  const CGFloat height = text_size("0", textStyle()).height;
  return NSMakeRect(inside.origin.x, (inside.size.height - height) / 2,
                    std::max<CGFloat>(0, inside.size.width), height);
}

/// Where the text's left edge is, which may lie outside of what shows.
CGFloat NSTextField::textStart() const {
  const NSRect rect = textRect();
  const CGFloat room = rect.size.width - text_size(shownText(), textStyle()).width - caret_width;
  if (room < 0)
    return rect.origin.x - scrolled_;
  switch (cell_->alignment) {
    case NSCenterTextAlignment:
      return rect.origin.x + room / 2;
    case NSRightTextAlignment:
      return rect.origin.x + room;
    default:
      return rect.origin.x;
  }
}

void NSTextField::scrollToCaret() {
  const TextStyle style = textStyle();
  const CGFloat width = textRect().size.width;
  const CGFloat text_width = text_size(shownText(), style).width + caret_width;
  const CGFloat caret = text_caret_position(shownText(), style, edited_.caret());
  scrolled_ = std::min(scrolled_, caret);
  scrolled_ = std::max(scrolled_, caret + caret_width - width);
  scrolled_ = std::clamp<CGFloat>(scrolled_, 0, std::max<CGFloat>(0, text_width - width));
}

size_t NSTextField::offsetAt(NSPoint place) const {
  return text_offset_at(shownText(), textStyle(), place.x - textStart());
}

bool NSTextField::showsSelection() const {
  return editing_ && edited_.hasSelection();
}

void NSTextField::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  drawFrame(context);
  CGContextSaveGState(context);
  CGContextClipToRect(context, NSInsetRect(bounds(), side_margin - caret_width, 0));
  drawSelection(context);
  const NSRect rect = textRect();
  const CGFloat start = textStart();
  const CGFloat width = text_size(shownText(), textStyle()).width + 1;
  CGContextDrawText(context, NSMakeRect(start, rect.origin.y, width, rect.size.height), shownText(),
                    textStyle());
  drawCaret(context);
  CGContextRestoreGState(context);
}

void NSTextField::drawFrame(CGContextRef context) const {
  if (cell_->draws_background) {
    set_fill(context, *cell_->background_color, 1);
    CGContextFillRect(context, bounds());
  }
  if (!refused_ && !cell_->bordered)
    return;
  CGContextSetLineWidth(context, 1);
  if (refused_) {
    CGContextSetRGBFillColor(context, refusal[0], refusal[1], refusal[2], CGFloat(0.25));
    CGContextFillRect(context, bounds());
    CGContextSetRGBStrokeColor(context, refusal[0], refusal[1], refusal[2], 1);
  } else {
    const NSColor& color = *cell_->text_color;
    CGContextSetRGBStrokeColor(context, color.redComponent(), color.greenComponent(), color.blueComponent(),
                               editing_ ? CGFloat(0.7) : CGFloat(0.35));
  }
  CGContextStrokeRect(context, NSInsetRect(bounds(), 0.5, 0.5));
}

void NSTextField::drawSelection(CGContextRef context) const {
  if (!showsSelection())
    return;
  const bool is_key = window() && window()->isKeyWindow();
  set_fill(context, *cell_->text_color, is_key ? selection_alpha : idle_selection_alpha);
  const NSRect rect = textRect();
  const CGFloat start = textStart();
  for (const TextSpan& span :
       text_spans(shownText(), textStyle(), edited_.selectionStart(), edited_.selectionEnd())) {
    CGContextFillRect(context,
                      NSMakeRect(start + span.left, rect.origin.y, span.right - span.left, rect.size.height));
  }
}

void NSTextField::drawCaret(CGContextRef context) const {
  if (!caret_shows_ || edited_.hasSelection())
    return;
  const NSRect rect = textRect();
  const CGFloat caret = textStart() + text_caret_position(shownText(), textStyle(), edited_.caret());
  set_fill(context, *cell_->text_color, 1);
  CGContextFillRect(context, NSMakeRect(std::round(caret), rect.origin.y, caret_width, rect.size.height));
}

}  // namespace cocoa
