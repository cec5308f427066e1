// SPDX-License-Identifier: MIT
#include "appkit/private/text_field_line.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSWindow.h"
#include "appkit/private/NSTextField_parts.h"

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

TextStyle TextFieldLine::textStyle() const {
  TextStyle style;
  style.size = static_cast<double>(field_.cell_->font->pointSize());
  style.bold = field_.cell_->font->isBold();
  style.alignment = TextAlignment::left;
  style.line_break = LineBreak::clip;
  style.red = static_cast<double>(field_.cell_->text_color->redComponent());
  style.green = static_cast<double>(field_.cell_->text_color->greenComponent());
  style.blue = static_cast<double>(field_.cell_->text_color->blueComponent());
  style.alpha = static_cast<double>(field_.cell_->text_color->alphaComponent());
  return style;
}

/// Of one line in the middle of the field; an empty text is as high as any.
NSRect TextFieldLine::textRect() const {
  const NSRect inside = NSInsetRect(field_.bounds(), side_margin, 0);
  const CGFloat height = text_size("0", textStyle()).height;
  return NSMakeRect(inside.origin.x, (inside.size.height - height) / 2,
                    std::max<CGFloat>(0, inside.size.width), height);
}

/// Where the text's left edge is, which may lie outside of what shows.
CGFloat TextFieldLine::textStart() const {
  const NSRect rect = textRect();
  const CGFloat room = rect.size.width - text_size(field_.shownText(), textStyle()).width - caret_width;
  if (room < 0)
    return rect.origin.x - scrolled_;
  switch (field_.cell_->alignment) {
    case NSCenterTextAlignment:
      return rect.origin.x + room / 2;
    case NSRightTextAlignment:
      return rect.origin.x + room;
    default:
      return rect.origin.x;
  }
}

void TextFieldLine::scrollToCaret() {
  const TextStyle style = textStyle();
  const CGFloat width = textRect().size.width;
  const CGFloat text_width = text_size(field_.shownText(), style).width + caret_width;
  const CGFloat caret = text_caret_position(field_.shownText(), style, field_.editedText().caret());
  scrolled_ = std::min(scrolled_, caret);
  scrolled_ = std::max(scrolled_, caret + caret_width - width);
  scrolled_ = std::clamp<CGFloat>(scrolled_, 0, std::max<CGFloat>(0, text_width - width));
}

size_t TextFieldLine::offsetAt(NSPoint place) const {
  return text_offset_at(field_.shownText(), textStyle(), place.x - textStart());
}

void TextFieldLine::draw(CGContextRef context) const {
  drawFrame(context);
  CGContextSaveGState(context);
  CGContextClipToRect(context, NSInsetRect(field_.bounds(), side_margin - caret_width, 0));
  drawSelection(context);
  const NSRect rect = textRect();
  const CGFloat start = textStart();
  const CGFloat width = text_size(field_.shownText(), textStyle()).width + 1;
  CGContextDrawText(context, NSMakeRect(start, rect.origin.y, width, rect.size.height), field_.shownText(),
                    textStyle());
  drawCaret(context);
  CGContextRestoreGState(context);
}

void TextFieldLine::drawFrame(CGContextRef context) const {
  if (field_.cell_->draws_background) {
    set_fill(context, *field_.cell_->background_color, 1);
    CGContextFillRect(context, field_.bounds());
  }
  if (!field_.isRefused() && !field_.cell_->bordered)
    return;
  CGContextSetLineWidth(context, 1);
  if (field_.isRefused()) {
    CGContextSetRGBFillColor(context, refusal[0], refusal[1], refusal[2], CGFloat(0.25));
    CGContextFillRect(context, field_.bounds());
    CGContextSetRGBStrokeColor(context, refusal[0], refusal[1], refusal[2], 1);
  } else {
    const NSColor& color = *field_.cell_->text_color;
    CGContextSetRGBStrokeColor(context, color.redComponent(), color.greenComponent(), color.blueComponent(),
                               field_.isEditing() ? CGFloat(0.7) : CGFloat(0.35));
  }
  CGContextStrokeRect(context, NSInsetRect(field_.bounds(), 0.5, 0.5));
}

void TextFieldLine::drawSelection(CGContextRef context) const {
  const TextEditingSession& session = field_.parts_->session;
  if (!session.isEditing() || !session.text().hasSelection())
    return;
  const bool is_key = field_.window() && field_.window()->isKeyWindow();
  set_fill(context, *field_.cell_->text_color, is_key ? selection_alpha : idle_selection_alpha);
  const NSRect rect = textRect();
  const CGFloat start = textStart();
  for (const TextSpan& span : text_spans(field_.shownText(), textStyle(), session.text().selectionStart(),
                                         session.text().selectionEnd())) {
    CGContextFillRect(context,
                      NSMakeRect(start + span.left, rect.origin.y, span.right - span.left, rect.size.height));
  }
}

void TextFieldLine::drawCaret(CGContextRef context) const {
  const TextEditingSession& session = field_.parts_->session;
  if (!session.showsCaret() || session.text().hasSelection())
    return;
  const NSRect rect = textRect();
  const CGFloat caret =
      textStart() + text_caret_position(field_.shownText(), textStyle(), session.text().caret());
  set_fill(context, *field_.cell_->text_color, 1);
  CGContextFillRect(context, NSMakeRect(std::round(caret), rect.origin.y, caret_width, rect.size.height));
}

}  // namespace cocoa
