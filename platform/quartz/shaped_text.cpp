// SPDX-License-Identifier: MIT
#include "quartz/private/shaped_text.h"

#include <algorithm>
#include <cmath>

#include "unicode/character_classes.h"
#include "unicode/text_breaks.h"
#include "unicode/utf8_text.h"

namespace cocoa {

/// Text of one font and one script.
struct ShapedText::Piece {
  std::shared_ptr<FontFace> face;
  hb_script_t script = HB_SCRIPT_COMMON;
  size_t start = 0;
  size_t end = 0;
  bool is_tab = false;
};

namespace {

constexpr double columns_a_tab = 8;

hb_buffer_t* empty_buffer() {
  thread_local const std::unique_ptr<hb_buffer_t, HbDeleter> buffer(hb_buffer_create());
  hb_buffer_clear_contents(buffer.get());
  return buffer.get();
}

/// What is not of one script, such as digits and blanks, is written in that of what it stands beside.
hb_script_t script_of(std::string_view utf8, size_t start, size_t end) {
  while (start < end) {
    const CodePoint c = code_point_at(utf8, start);
    if (has_script(c.value))
      return hb_unicode_script(hb_unicode_funcs_get_default(), c.value);
    start += c.length;
  }
  return HB_SCRIPT_COMMON;
}

}  // namespace

ShapedText::ShapedText(FontFamily& family, double size, std::string_view utf8) : text_(utf8), size_(size) {
  const std::shared_ptr<FontFace> own = family.face();
  if (!own)
    return;
  const std::vector<size_t> characters = character_breaks(utf8);
  Piece piece;
  for (size_t i = 0; i + 1 < characters.size(); ++i) {
    const size_t start = characters[i];
    const size_t end = characters[i + 1];
    const char32_t first = code_point_at(utf8, start).value;
    const bool is_tab = first == '\t';
    const hb_script_t script = script_of(utf8, start, end);
    // Blanks stay in the font that they stand in.
    const bool stays = is_space(first) && piece.face && piece.face->has(first);
    const std::shared_ptr<FontFace> face =
        stays ? piece.face : family.face_for(utf8.substr(start, end - start));
    const bool same_script =
        script == piece.script || script == HB_SCRIPT_COMMON || piece.script == HB_SCRIPT_COMMON;
    if (piece.face && (face != piece.face || !same_script || is_tab || piece.is_tab)) {
      add(piece);
      piece = {nullptr, HB_SCRIPT_COMMON, start, start};
    }
    piece.face = face;
    piece.end = end;
    piece.is_tab = is_tab;
    if (script != HB_SCRIPT_COMMON)
      piece.script = script;
  }
  if (piece.face)
    add(piece);
  if (runs_.empty()) {
    ascent_ = own->ascent() * size;
    descent_ = own->descent() * size;
  }
}

void ShapedText::add_glyphs(const Piece& piece) {
  hb_buffer_t* buffer = empty_buffer();
  hb_buffer_add_utf8(buffer, text_.data(), static_cast<int>(text_.size()), static_cast<unsigned>(piece.start),
                     static_cast<int>(piece.end - piece.start));
  hb_buffer_set_content_type(buffer, HB_BUFFER_CONTENT_TYPE_UNICODE);
  hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
  hb_buffer_set_script(buffer, piece.script);
  piece.face->shape(buffer);
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
  const double points_a_unit = size_ / piece.face->units();
  for (unsigned i = 0; i < count; ++i) {
    const hb_glyph_position_t& p = positions[i];
    glyphs_.push_back({infos[i].codepoint, infos[i].cluster, width_ + p.x_offset * points_a_unit,
                       p.y_offset * points_a_unit, p.x_advance * points_a_unit});
    width_ += glyphs_.back().advance;
  }
}

void ShapedText::add_tab(const Piece& piece) {
  const FontFace::Blank blank = piece.face->blank();
  const double column = blank.advance * size_ / piece.face->units() * columns_a_tab;
  const double next = column > 0 ? (std::floor(width_ / column + 1e-6) + 1) * column : width_;
  glyphs_.push_back({blank.glyph, piece.start, width_, 0, next - width_});
  width_ = next;
}

void ShapedText::add(const Piece& piece) {
  const size_t first = glyphs_.size();
  if (piece.is_tab) {
    add_tab(piece);
  } else {
    add_glyphs(piece);
  }
  ascent_ = std::max(ascent_, piece.face->ascent() * size_);
  descent_ = std::max(descent_, piece.face->descent() * size_);
  runs_.push_back({piece.face, first, glyphs_.size()});
}

std::vector<CaretPlace> ShapedText::caret_places() const {
  const std::vector<size_t> characters = character_breaks(text_);
  std::vector<CaretPlace> places;
  places.reserve(characters.size());
  auto character = characters.begin();
  double x = 0;
  for (const GlyphRun& run : runs_) {
    for (size_t i = run.first; i < run.end;) {
      // The glyphs that stand for the same characters, and these.
      const size_t start = i;
      double advance = 0;
      for (; i < run.end && glyphs_[i].offset == glyphs_[start].offset; ++i)
        advance += glyphs_[i].advance;
      const size_t end = i < glyphs_.size() ? glyphs_[i].offset : text_.size();
      const auto behind = std::lower_bound(character, characters.end(), end);
      const auto count = static_cast<size_t>(behind - character);
      if (count > 0)
        places.push_back({*character, x});
      if (count > 1) {
        const double points_a_unit = size_ / run.face->units();
        for (const double caret :
             run.face->ligature_carets(glyphs_[start].id, advance / points_a_unit, count))
          places.push_back({*++character, x + caret * points_a_unit});
      }
      character = behind;
      x += advance;
    }
  }
  for (; character != characters.end(); ++character)
    places.push_back({*character, x});
  return places;
}

void ShapedText::justify(double width) {
  const auto is_blank = [&](const Glyph& glyph) { return text_[glyph.offset] == ' '; };
  const auto blanks = std::count_if(glyphs_.begin(), glyphs_.end(), is_blank);
  if (blanks == 0 || width <= width_)
    return;
  const double more = (width - width_) / static_cast<double>(blanks);
  double moved = 0;
  for (Glyph& glyph : glyphs_) {
    glyph.x += moved;
    if (is_blank(glyph)) {
      glyph.advance += more;
      moved += more;
    }
  }
  width_ = width;
}

}  // namespace cocoa
