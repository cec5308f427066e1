// SPDX-License-Identifier: MIT
#include "quartz/text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "quartz/private/context.h"
#include "quartz/private/text_layout.h"

namespace cocoa {

namespace {

/// From points right of and below the rectangle's upper left corner to device pixels.
Matrix text_matrix(const GraphicsState& state, CGRect rect) {
  return scaled(moved(state.ctm, static_cast<double>(NSMinX(rect)), static_cast<double>(NSMaxY(rect))), 1,
                -1);
}

/// Masks beyond this scale are not worth their memory.
constexpr double max_mask_scale = 16;

bool stands_upright(const Matrix& m) {
  return m.xy == 0 && m.yx == 0 && m.xx > 0 && m.yy > 0 && m.xx <= max_mask_scale && m.yy <= max_mask_scale;
}

/// The usual case: text that stands upright, drawn from its mask. False when it is too large for one.
bool paint_mask(CGContext& context, TextLayout& layout, size_t lines, const Matrix& m, const Rgba& color) {
  const double quarters = std::round(m.x0 * 4);
  const int x = static_cast<int>(std::floor(quarters / 4));
  const int quarter = static_cast<int>(quarters - 4.0 * x);
  const int y = static_cast<int>(std::lround(m.y0 + layout.lines().front().baseline * m.yy));
  const TextMask* mask = stands_upright(m) ? layout.mask(m.xx, m.yy, quarter, lines) : nullptr;
  if (!mask)
    return false;
  PlainSource source(context.fine(color));
  context.draw(moved(mask->coverage, x, y), source);
  return true;
}

/// Text that is turned, mirrored, slanted or very large, drawn from its outlines.
void paint_outlines(CGContext& context, const TextLayout& layout, size_t lines, const Matrix& m,
                    const Rgba& color) {
  PathData path;
  layout.add_outlines(path, m, lines);
  PlainSource source(context.fine(color));
  context.draw(context.fill_coverage(path, FillRule::nonzero), source);
}

void draw_text(CGContext& context, CGRect rect, std::string_view utf8, const TextStyle& style) {
  const Matrix m = text_matrix(context.state(), rect);
  if (!finite(m) || !invertible(m) || std::abs(m.x0) > max_coordinate || std::abs(m.y0) > max_coordinate)
    return;
  TextLayout& layout = text_layout(utf8, style, std::max(0.0, static_cast<double>(NSWidth(rect))));
  const size_t lines = layout.lines_within(static_cast<double>(NSHeight(rect)));
  const Rgba color{unit_value(style.red), unit_value(style.green), unit_value(style.blue),
                   unit_value(style.alpha)};
  if (!paint_mask(context, layout, lines, m, color))
    paint_outlines(context, layout, lines, m, color);
}

}  // namespace

void CGContextDrawText(CGContextRef context, CGRect rect, std::string_view utf8, const TextStyle& style) {
  if (!context || utf8.empty() || !(style.size > 0) || !std::isfinite(NSWidth(rect)) ||
      std::isnan(NSHeight(rect)))
    return;
  if (style.line_break != LineBreak::clip) {
    draw_text(*context, rect, utf8, style);
    return;
  }
  const PathData path = context->path;
  CGContextSaveGState(context);
  // At the sides only: tails of letters may reach below.
  CGContextClipToRect(context, NSInsetRect(rect, 0, static_cast<CGFloat>(-style.size)));
  draw_text(*context, rect, utf8, style);
  CGContextRestoreGState(context);
  context->path = path;
}

CGSize text_size(std::string_view utf8, const TextStyle& style) {
  if (!(style.size > 0))
    return {};
  const TextLayout& layout = text_layout(utf8, style, -1);
  CGSize size{0, static_cast<CGFloat>(layout.lines().back().bottom)};
  for (const TextLine& line : layout.lines())
    size.width = std::max(size.width, static_cast<CGFloat>(line.width));
  return size;
}

namespace {

std::vector<CaretPlace> caret_places(std::string_view utf8, TextStyle style) {
  style.alignment = TextAlignment::left;
  if (!(style.size > 0))
    return {{0, 0}};
  return text_layout(utf8, style, -1).lines().front().shaped.caret_places();
}

/// Where the caret of an offset stands: within a character, before it.
double caret_position(const std::vector<CaretPlace>& places, size_t offset) {
  const auto after =
      std::upper_bound(places.begin(), places.end(), offset,
                       [](size_t wanted, const CaretPlace& place) { return wanted < place.offset; });
  return std::prev(after)->x;
}

}  // namespace

CGFloat text_caret_position(std::string_view utf8, const TextStyle& style, size_t offset) {
  return static_cast<CGFloat>(caret_position(caret_places(utf8, style), offset));
}

size_t text_offset_at(std::string_view utf8, const TextStyle& style, CGFloat position) {
  const std::vector<CaretPlace> places = caret_places(utf8, style);
  const auto x = static_cast<double>(position);
  const auto distance = [x](const CaretPlace& place) { return std::abs(place.x - x); };
  return std::min_element(places.begin(), places.end(),
                          [&](const CaretPlace& a, const CaretPlace& b) { return distance(a) < distance(b); })
      ->offset;
}

std::vector<TextSpan> text_spans(std::string_view utf8, const TextStyle& style, size_t start, size_t end) {
  if (start >= end)
    return {};
  const std::vector<CaretPlace> places = caret_places(utf8, style);
  return {{static_cast<CGFloat>(caret_position(places, start)),
           static_cast<CGFloat>(caret_position(places, end))}};
}

}  // namespace cocoa
