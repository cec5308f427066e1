// SPDX-License-Identifier: MIT
#pragma once

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <hb.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include FT_FREETYPE_H

#include "quartz/private/path_data.h"
#include "quartz/private/pixels.h"

/// One face of a font file, as a user wants it to be drawn.

namespace cocoa {

/// Where a glyph's mask goes and how large it is. A letter of one size has four masks, as it may start at
/// every quarter of a pixel.
struct GlyphPlace {
  uint32_t glyph = 0;
  int32_t width = 0;  ///< of the em, in 64ths of a device pixel
  int32_t height = 0;
  uint8_t quarter_x = 0;  ///< of a pixel, to the right
  uint8_t quarter_y = 0;  ///< downwards; 0 but for marks that a font moves off the baseline
  bool operator==(const GlyphPlace&) const = default;
};

/// How much of each pixel a glyph covers.
struct GlyphMask {
  PixelBounds bounds;  ///< from the pixel that the glyph starts in, on the baseline
  std::vector<uint8_t> coverage;
};

struct HbDeleter {
  void operator()(hb_font_t* font) const { hb_font_destroy(font); }
  void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

/// For one thread, as its library is, which must outlive it.
class FontFace {
 public:
  /// What fontconfig has prepared for rendering. Null when the file cannot be used as outlines.
  static std::shared_ptr<FontFace> open(FT_Library library, const FcPattern* pattern);
  ~FontFace();
  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

  /// Above and below the baseline, in ems.
  double ascent() const;
  double descent() const;
  /// Ems are divided into as many units by what `shape` leaves in the buffer.
  double units() const;

  bool has(char32_t character) const;
  /// Turns the buffer's characters into glyphs.
  void shape(hb_buffer_t* buffer);
  struct Blank {
    uint32_t glyph = 0;
    double advance = 0;  ///< units
  };
  /// The space between words.
  Blank blank();
  /// Where carets stand within a ligature of so many characters, in units from its left; evenly when the
  /// font does not say.
  std::vector<double> ligature_carets(uint32_t glyph, double advance, size_t characters);

  /// Whether glyphs may start at every quarter of a pixel. Without smoothing they would be of uneven shapes.
  bool is_smooth() const { return smooth_; }
  /// Kept for later; holds until the next call.
  const GlyphMask& mask(const GlyphPlace& place);
  /// `m` takes ems, y downwards, into the space of the path.
  void add_outline(PathData& path, const Matrix& m, uint32_t glyph);

 private:
  struct PlaceHash {
    size_t operator()(const GlyphPlace& place) const;
  };

  explicit FontFace(FT_Face face) : face_(face) {}
  void take_rendering(const FcPattern* pattern);
  void take_variations(const FcPattern* pattern);
  bool prepare();
  GlyphMask make_mask(const GlyphPlace& place);

  FT_Face face_;
  FT_Size design_size_ = nullptr;  ///< a pixel for each unit: what text is measured in
  FT_Size device_size_ = nullptr;  ///< whatever the last mask had
  int32_t device_width_ = 0;
  int32_t device_height_ = 0;
  int load_flags_ = 0;
  bool smooth_ = true;
  bool embolden_ = false;
  std::unique_ptr<hb_font_t, HbDeleter> shaper_;
  std::unordered_map<GlyphPlace, GlyphMask, PlaceHash> masks_;
  size_t mask_bytes_ = 0;
};

}  // namespace cocoa
