#include "quartz/text.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

#include "quartz/context.h"
#include "quartz/text_layout.h"

namespace cocoa {

namespace {

/// From points right of and below the rectangle's upper left corner to device pixels.
cairo_matrix_t text_matrix(const GraphicsState& state, CGRect rect) {
  cairo_matrix_t m = state.ctm;
  cairo_matrix_translate(&m, static_cast<double>(NSMinX(rect)), static_cast<double>(NSMaxY(rect)));
  cairo_matrix_scale(&m, 1, -1);
  return m;
}

/// The usual case: text that stands upright, drawn from its mask. False when it is too large for one.
bool paint_mask(CGContext& context, TextLayout& layout, size_t lines, const cairo_matrix_t& m,
                const Rgba& color) {
  const double quarters = std::round(m.x0 * 4);
  const int x = static_cast<int>(std::floor(quarters / 4));
  const int quarter = static_cast<int>(quarters - 4.0 * x);
  const int y = static_cast<int>(std::lround(m.y0 + layout.lines().front().baseline * m.yy));
  const TextMask& mask = layout.mask(m.xx, m.yy, quarter, lines);
  if (cairo_surface_status(mask.surface.get()) != CAIRO_STATUS_SUCCESS)
    return false;
  const double alpha = context.state().alpha;
  paint_object(context, moved(mask.bounds, x, y), [&](cairo_t* cr) {
    set_source(cr, color, alpha);
    cairo_mask_surface(cr, mask.surface.get(), x + mask.bounds.x0, y + mask.bounds.y0);
  });
  return true;
}

/// Text that is turned, mirrored or slanted, drawn from its outlines.
void paint_outlines(CGContext& context, const TextLayout& layout, size_t lines, const cairo_matrix_t& m,
                    const Rgba& color) {
  const double alpha = context.state().alpha;
  paint_object(context, everywhere, [&](cairo_t* cr) {
    cairo_matrix_t before;
    cairo_get_matrix(cr, &before);
    cairo_new_path(cr);
    cairo_transform(cr, &m);
    layout.add_outlines(cr, lines);
    cairo_set_matrix(cr, &before);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
    set_source(cr, color, alpha);
    cairo_fill(cr);
  });
}

/// Masks beyond this size are not worth their memory, and a matrix beyond it has no text that can be read.
constexpr double max_mask_scale = 16;

bool suits_mask(const cairo_matrix_t& m) {
  return m.xy == 0 && m.yx == 0 && m.xx > 0 && m.yy > 0 && m.xx <= max_mask_scale && m.yy <= max_mask_scale;
}

void draw_text(CGContext& context, CGRect rect, std::string_view utf8, const TextStyle& style) {
  const cairo_matrix_t m = text_matrix(context.state(), rect);
  if (!finite(m) || !invertible(m) || std::abs(m.x0) > max_coordinate || std::abs(m.y0) > max_coordinate)
    return;
  TextLayout& layout = text_layout(utf8, style, std::max(0.0, static_cast<double>(NSWidth(rect))));
  const size_t lines = layout.lines_within(static_cast<double>(NSHeight(rect)));
  const Rgba color{unit_value(style.red), unit_value(style.green), unit_value(style.blue),
                   unit_value(style.alpha)};
  if (!suits_mask(m) || !paint_mask(context, layout, lines, m, color))
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

PangoLayoutLine* unwrapped_line(std::string_view utf8, TextStyle style) {
  style.alignment = TextAlignment::left;
  return text_layout(utf8, style, -1).lines().front().line;
}

CGFloat points(int pango_units) {
  return static_cast<CGFloat>(pango_units) / PANGO_SCALE;
}

}  // namespace

CGFloat text_caret_position(std::string_view utf8, const TextStyle& style, size_t offset) {
  int x = 0;
  pango_layout_line_index_to_x(unwrapped_line(utf8, style), static_cast<int>(offset), FALSE, &x);
  return points(x);
}

size_t text_offset_at(std::string_view utf8, const TextStyle& style, CGFloat position) {
  constexpr CGFloat farthest = 1e6;
  int index = 0;
  int trailing = 0;
  const CGFloat x = std::clamp<CGFloat>(position, -farthest, farthest) * PANGO_SCALE;
  pango_layout_line_x_to_index(unwrapped_line(utf8, style), static_cast<int>(x), &index, &trailing);
  // `trailing` counts characters: the caret goes behind all that the reader sees as one.
  const char* place = utf8.data() + index;
  while (trailing-- > 0)
    place = g_utf8_next_char(place);
  return static_cast<size_t>(place - utf8.data());
}

std::vector<TextSpan> text_spans(std::string_view utf8, const TextStyle& style, size_t start, size_t end) {
  int* ranges = nullptr;
  int count = 0;
  pango_layout_line_get_x_ranges(unwrapped_line(utf8, style), static_cast<int>(start), static_cast<int>(end),
                                 &ranges, &count);
  const std::unique_ptr<int, decltype(&g_free)> owned(ranges, &g_free);
  const std::span<const int> edges(ranges, 2 * static_cast<size_t>(count));
  std::vector<TextSpan> spans;
  spans.reserve(edges.size() / 2);
  for (size_t i = 0; i < edges.size(); i += 2)
    spans.push_back({points(edges[i]), points(edges[i + 1])});
  return spans;
}

}  // namespace cocoa
