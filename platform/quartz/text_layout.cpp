#include "quartz/text_layout.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

namespace {

constexpr size_t cached_layouts = 64;
/// The widest line in points; Pango counts 1024ths of a point in an int.
constexpr double max_width = 1e6;

double points(int pango_units) {
  return static_cast<double>(pango_units) / PANGO_SCALE;
}
int pango_units(double value) {
  return static_cast<int>(std::lround(std::clamp(value, 0.0, max_width) * PANGO_SCALE));
}

void set_font(PangoLayout* layout, const TextStyle& style) {
  constexpr double max_size = 1e4;
  const std::unique_ptr<PangoFontDescription, decltype(&pango_font_description_free)> font(
      pango_font_description_new(), &pango_font_description_free);
  pango_font_description_set_family(font.get(), style.family.empty() ? "Sans" : style.family.c_str());
  pango_font_description_set_weight(font.get(), style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(font.get(), std::min(style.size, max_size) * PANGO_SCALE);
  pango_layout_set_font_description(layout, font.get());
}

void set_line_break(PangoLayout* layout, LineBreak line_break, double width) {
  const bool limited = width >= 0 && line_break != LineBreak::clip;
  pango_layout_set_width(layout, limited ? pango_units(width) : -1);
  pango_layout_set_wrap(layout, line_break == LineBreak::char_wrap ? PANGO_WRAP_CHAR : PANGO_WRAP_WORD_CHAR);
  pango_layout_set_ellipsize(layout, line_break == LineBreak::truncate_head     ? PANGO_ELLIPSIZE_START
                                     : line_break == LineBreak::truncate_tail   ? PANGO_ELLIPSIZE_END
                                     : line_break == LineBreak::truncate_middle ? PANGO_ELLIPSIZE_MIDDLE
                                                                                : PANGO_ELLIPSIZE_NONE);
}

void set_text(PangoLayout* layout, std::string_view utf8) {
  const auto length = static_cast<gssize>(utf8.size());
  if (g_utf8_validate(utf8.data(), length, nullptr)) {
    pango_layout_set_text(layout, utf8.data(), static_cast<int>(length));
    return;
  }
  const std::unique_ptr<char, decltype(&g_free)> valid(g_utf8_make_valid(utf8.data(), length), &g_free);
  pango_layout_set_text(layout, valid.get(), -1);
}

/// Text measures the same at every scale: nothing is fitted to pixels.
GObjectPtr<PangoContext> make_context() {
  // Fonts of our own: the default font map is that of a host that uses Pango too.
  const GObjectPtr<PangoFontMap> fonts(pango_cairo_font_map_new());
  GObjectPtr<PangoContext> context(pango_font_map_create_context(fonts.get()));
  const std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
      cairo_font_options_create(), &cairo_font_options_destroy);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context.get(), options.get());
  pango_cairo_context_set_resolution(context.get(), 72);
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  return context;
}

struct TextCache {
  GObjectPtr<PangoContext> context = make_context();
  std::vector<std::unique_ptr<TextLayout>> layouts;
  unsigned long uses = 0;
};

/// The same but for the colour, which layouts and masks do not have.
bool same_setting(const TextStyle& a, const TextStyle& b) {
  return a.size == b.size && a.bold == b.bold && a.alignment == b.alignment && a.line_break == b.line_break &&
         a.family == b.family;
}

}  // namespace

TextLayout::TextLayout(PangoContext* context, std::string_view utf8, const TextStyle& style, double width)
    : text_(utf8), style_(style), width_(width), layout_(pango_layout_new(context)) {
  set_font(layout_.get(), style);
  set_line_break(layout_.get(), style.line_break, width);
  pango_layout_set_justify(layout_.get(), style.alignment == TextAlignment::justified);
  set_text(layout_.get(), utf8);
  set_lines();
}

bool TextLayout::is_for(std::string_view utf8, const TextStyle& style, double width) const {
  return width == width_ && utf8 == text_ && same_setting(style, style_);
}

void TextLayout::set_lines() {
  const std::unique_ptr<PangoLayoutIter, decltype(&pango_layout_iter_free)> iterator(
      pango_layout_get_iter(layout_.get()), &pango_layout_iter_free);
  do {
    TextLine line;
    line.line = pango_layout_iter_get_line_readonly(iterator.get());
    PangoRectangle logical;
    pango_layout_iter_get_line_extents(iterator.get(), nullptr, &logical);
    line.baseline = points(pango_layout_iter_get_baseline(iterator.get()));
    line.bottom = points(logical.y + logical.height);
    line.width = points(logical.width);
    PangoRectangle ink;
    pango_layout_line_get_extents(line.line, &ink, nullptr);
    line.ink.add(points(ink.x), points(ink.y));
    line.ink.add(points(ink.x + ink.width), points(ink.y + ink.height));
    line.x = start_of(line);
    lines_.push_back(line);
  } while (pango_layout_iter_next_line(iterator.get()));
}

double TextLayout::start_of(const TextLine& line) const {
  const double room = width_ < 0 ? 0 : width_ - line.width;
  switch (style_.alignment) {
    case TextAlignment::center:
      return room / 2;
    case TextAlignment::right:
      return room;
    case TextAlignment::left:
    case TextAlignment::justified:
      return 0;
    case TextAlignment::natural:
      break;
  }
  return pango_layout_line_get_resolved_direction(line.line) == PANGO_DIRECTION_RTL ? room : 0;
}

size_t TextLayout::lines_within(double height) const {
  constexpr double rounding = 1e-3;
  const auto too_low = [height](const TextLine& line) { return line.bottom > height + rounding; };
  const auto first_too_low = std::find_if(lines_.begin(), lines_.end(), too_low);
  return std::max<size_t>(static_cast<size_t>(first_too_low - lines_.begin()), 1);
}

void TextLayout::add_outlines(cairo_t* cr, size_t count) const {
  for (size_t i = 0; i < count; ++i) {
    cairo_move_to(cr, lines_[i].x, lines_[i].baseline);
    pango_cairo_layout_line_path(cr, lines_[i].line);
  }
}

const TextMask& TextLayout::mask(double scale_x, double scale_y, int quarter, size_t count) {
  const auto fits = [&](const TextMask& m) {
    return m.surface && m.scale_x == scale_x && m.scale_y == scale_y && m.quarter == quarter &&
           m.lines == count;
  };
  const auto found = std::find_if(masks_.begin(), masks_.end(), fits);
  if (found != masks_.end())
    return *found;
  TextMask& replaced = masks_[next_mask_];
  next_mask_ = (next_mask_ + 1) % masks_.size();
  replaced = make_mask(scale_x, scale_y, quarter, count);
  return replaced;
}

TextMask TextLayout::make_mask(double scale_x, double scale_y, int quarter, size_t count) const {
  // Glyphs are drawn as outlines: Cairo's own would be moved to whole pixels each, and small text would
  // look unevenly spaced.
  const auto start_x = [&](const TextLine& line) { return line.x * scale_x + quarter / 4.0; };
  const auto row = [&](const TextLine& line) {
    return std::round((line.baseline - lines_.front().baseline) * scale_y);
  };
  DeviceBox box;
  for (size_t i = 0; i < count; ++i) {
    const TextLine& line = lines_[i];
    box.add(start_x(line) + line.ink.x0 * scale_x, row(line) + line.ink.y0 * scale_y);
    box.add(start_x(line) + line.ink.x1 * scale_x, row(line) + line.ink.y1 * scale_y);
  }
  TextMask mask{nullptr, scale_x, scale_y, quarter, count, box.pixels().grown(1)};
  mask.surface.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, mask.bounds.width(), mask.bounds.height()));
  const Cairo cr(cairo_create(mask.surface.get()));
  for (size_t i = 0; i < count; ++i) {
    cairo_identity_matrix(cr.get());
    cairo_translate(cr.get(), start_x(lines_[i]) - mask.bounds.x0, row(lines_[i]) - mask.bounds.y0);
    cairo_scale(cr.get(), scale_x, scale_y);
    cairo_move_to(cr.get(), 0, 0);
    pango_cairo_layout_line_path(cr.get(), lines_[i].line);
    cairo_fill(cr.get());
  }
  return mask;
}

TextLayout& text_layout(std::string_view utf8, const TextStyle& style, double width) {
  thread_local TextCache cache;
  auto& layouts = cache.layouts;
  const auto found = std::find_if(layouts.begin(), layouts.end(),
                                  [&](const auto& layout) { return layout->is_for(utf8, style, width); });
  if (found != layouts.end()) {
    (*found)->last_use = ++cache.uses;
    return **found;
  }
  auto layout = std::make_unique<TextLayout>(cache.context.get(), utf8, style, width);
  layout->last_use = ++cache.uses;
  if (layouts.size() < cached_layouts)
    return *layouts.emplace_back(std::move(layout));
  const auto oldest = std::min_element(
      layouts.begin(), layouts.end(), [](const auto& a, const auto& b) { return a->last_use < b->last_use; });
  *oldest = std::move(layout);
  return **oldest;
}

}  // namespace cocoa
