// SPDX-License-Identifier: MIT
#include "quartz/private/font_face.h"

#include <hb-ft.h>
#include <hb-ot.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>
#include <string_view>

#include FT_MULTIPLE_MASTERS_H
#include FT_OUTLINE_H
#include FT_SIZES_H

namespace cocoa {

namespace {

/// FreeType's and HarfBuzz's 26.6 numbers.
constexpr double fractions = 64;
/// How much of the em a stem gains when a font has no bold face of its own.
constexpr int emboldening = 24;
/// Beyond this, the masks of a face are made anew.
constexpr size_t max_mask_bytes = size_t{512} * 1024;

bool boolean(const FcPattern* pattern, const char* property, bool otherwise) {
  FcBool value = FcFalse;
  return FcPatternGetBool(pattern, property, 0, &value) == FcResultMatch ? value != FcFalse : otherwise;
}

int integer(const FcPattern* pattern, const char* property, int otherwise) {
  int value = 0;
  return FcPatternGetInteger(pattern, property, 0, &value) == FcResultMatch ? value : otherwise;
}

const char* text(const FcPattern* pattern, const char* property) {
  FcChar8* value = nullptr;
  return FcPatternGetString(pattern, property, 0, &value) == FcResultMatch
             ? reinterpret_cast<const char*>(value)
             : nullptr;
}

/// Sets what the list "wght=700,wdth=90" names of a font's axes.
void set_coordinates(std::string_view list, const FT_MM_Var& axes, std::vector<FT_Fixed>& coordinates) {
  while (!list.empty()) {
    const std::string_view one = list.substr(0, list.find(','));
    list.remove_prefix(std::min(one.size() + 1, list.size()));
    hb_variation_t variation;
    if (!hb_variation_from_string(one.data(), static_cast<int>(one.size()), &variation))
      continue;
    for (FT_UInt i = 0; i < axes.num_axis; ++i) {
      if (axes.axis[i].tag == variation.tag)
        coordinates[i] = static_cast<FT_Fixed>(std::lround(static_cast<double>(variation.value) * 65536));
    }
  }
}

}  // namespace

std::shared_ptr<FontFace> FontFace::open(FT_Library library, const FcPattern* pattern) {
  const char* file = text(pattern, FC_FILE);
  FT_Face face = nullptr;
  if (!file || FT_New_Face(library, file, integer(pattern, FC_INDEX, 0), &face) != FT_Err_Ok)
    return nullptr;
  std::shared_ptr<FontFace> result(new FontFace(face));
  if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0)
    return nullptr;
  result->take_rendering(pattern);
  result->take_variations(pattern);
  return result->prepare() ? result : nullptr;
}

FontFace::~FontFace() {
  shaper_.reset();
  FT_Done_Face(face_);
}

void FontFace::take_rendering(const FcPattern* pattern) {
  smooth_ = boolean(pattern, FC_ANTIALIAS, true);
  embolden_ = boolean(pattern, FC_EMBOLDEN, false);
  load_flags_ = FT_LOAD_NO_BITMAP;
  const int style = integer(pattern, FC_HINT_STYLE, FC_HINT_FULL);
  if (!boolean(pattern, FC_HINTING, true) || style == FC_HINT_NONE) {
    load_flags_ |= FT_LOAD_NO_HINTING;
    return;
  }
  load_flags_ |= !smooth_                  ? FT_LOAD_TARGET_MONO
                 : style == FC_HINT_SLIGHT ? FT_LOAD_TARGET_LIGHT
                                           : FT_LOAD_TARGET_NORMAL;
  if (boolean(pattern, FC_AUTOHINT, false))
    load_flags_ |= FT_LOAD_FORCE_AUTOHINT;
}

void FontFace::take_variations(const FcPattern* pattern) {
  const char* list = text(pattern, FC_FONT_VARIATIONS);
  FT_MM_Var* axes = nullptr;
  if (!list || !FT_HAS_MULTIPLE_MASTERS(face_) || FT_Get_MM_Var(face_, &axes) != FT_Err_Ok)
    return;
  std::vector<FT_Fixed> coordinates;
  for (FT_UInt i = 0; i < axes->num_axis; ++i)
    coordinates.push_back(axes->axis[i].def);
  set_coordinates(list, *axes, coordinates);
  FT_Set_Var_Design_Coordinates(face_, axes->num_axis, coordinates.data());
  FT_Done_MM_Var(face_->glyph->library, axes);
}

bool FontFace::prepare() {
  design_size_ = face_->size;
  if (FT_Set_Pixel_Sizes(face_, 0, face_->units_per_EM) != FT_Err_Ok ||
      FT_New_Size(face_, &device_size_) != FT_Err_Ok)
    return false;
  shaper_.reset(hb_ft_font_create_referenced(face_));
  hb_ft_font_set_load_flags(shaper_.get(), FT_LOAD_NO_BITMAP | FT_LOAD_NO_HINTING);
  // Nothing is fitted to pixels: text measures the same at every scale.
  hb_font_set_ppem(shaper_.get(), 0, 0);
  return true;
}

double FontFace::ascent() const {
  return static_cast<double>(face_->ascender) / face_->units_per_EM;
}
double FontFace::descent() const {
  return -static_cast<double>(face_->descender) / face_->units_per_EM;
}
double FontFace::units() const {
  return fractions * face_->units_per_EM;
}

bool FontFace::has(char32_t character) const {
  return FT_Get_Char_Index(face_, character) != 0;
}

void FontFace::shape(hb_buffer_t* buffer) {
  FT_Activate_Size(design_size_);
  hb_shape(shaper_.get(), buffer, nullptr, 0);
  if (!embolden_)
    return;
  unsigned count = 0;
  hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
  for (unsigned i = 0; i < count; ++i) {
    if (positions[i].x_advance != 0)
      positions[i].x_advance += static_cast<hb_position_t>(units() / emboldening);
  }
}

FontFace::Blank FontFace::blank() {
  FT_Activate_Size(design_size_);
  hb_codepoint_t glyph = 0;
  hb_font_get_nominal_glyph(shaper_.get(), ' ', &glyph);
  return {glyph, static_cast<double>(hb_font_get_glyph_h_advance(shaper_.get(), glyph))};
}

std::vector<double> FontFace::ligature_carets(uint32_t glyph, double advance, size_t characters) {
  std::vector<double> carets;
  std::vector<hb_position_t> known(characters - 1);
  auto count = static_cast<unsigned>(known.size());
  const unsigned all =
      hb_ot_layout_get_ligature_carets(shaper_.get(), HB_DIRECTION_LTR, glyph, 0, &count, known.data());
  for (size_t i = 1; i < characters; ++i) {
    carets.push_back(all == known.size()
                         ? known[i - 1]
                         : advance * static_cast<double>(i) / static_cast<double>(characters));
  }
  return carets;
}

// Masks

size_t FontFace::PlaceHash::operator()(const GlyphPlace& place) const {
  constexpr size_t factor = 0x9E3779B1U;
  size_t hash = place.glyph;
  hash = hash * factor + static_cast<size_t>(place.width);
  hash = hash * factor + static_cast<size_t>(place.height);
  return hash * factor + static_cast<size_t>(place.quarter_x) * 4 + place.quarter_y;
}

const GlyphMask& FontFace::mask(const GlyphPlace& place) {
  const auto found = masks_.find(place);
  if (found != masks_.end())
    return found->second;
  GlyphMask made = make_mask(place);
  const size_t bytes = made.coverage.size() + sizeof(GlyphPlace) + sizeof(GlyphMask);
  if (mask_bytes_ + bytes > max_mask_bytes) {
    masks_.clear();
    mask_bytes_ = 0;
  }
  mask_bytes_ += bytes;
  return masks_.emplace(place, std::move(made)).first->second;
}

namespace {

/// The pixels that an outline touches, y upwards.
PixelBounds bounds_of(const FT_Outline& outline) {
  FT_BBox box;
  FT_Outline_Get_CBox(&outline, &box);
  const auto down = [](FT_Pos v) { return static_cast<int>(v >> 6); };
  const auto up = [](FT_Pos v) { return static_cast<int>((v + 63) >> 6); };
  return {down(box.xMin), down(box.yMin), up(box.xMax), up(box.yMax)};
}

/// A bit for each pixel, as FreeType has it without smoothing.
std::vector<uint8_t> unpacked(const std::vector<uint8_t>& bits, int width, int height, int stride) {
  std::vector<uint8_t> coverage;
  coverage.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
  for (int y = 0; y < height; ++y) {
    const auto row = bits.begin() + static_cast<ptrdiff_t>(y) * stride;
    for (int x = 0; x < width; ++x)
      coverage.push_back((row[x / 8] & 0x80U >> (x % 8)) != 0 ? 255 : 0);
  }
  return coverage;
}

std::vector<uint8_t> rasterised(FT_Library library, FT_Outline& outline, int width, int height, bool smooth) {
  const int stride = smooth ? width : (width + 7) / 8;
  std::vector<uint8_t> memory(static_cast<size_t>(stride) * static_cast<size_t>(height));
  FT_Bitmap bitmap{};
  bitmap.rows = static_cast<unsigned>(height);
  bitmap.width = static_cast<unsigned>(width);
  bitmap.pitch = stride;
  bitmap.buffer = memory.data();
  bitmap.num_grays = 256;
  bitmap.pixel_mode = smooth ? FT_PIXEL_MODE_GRAY : FT_PIXEL_MODE_MONO;
  FT_Outline_Get_Bitmap(library, &outline, &bitmap);
  return smooth ? memory : unpacked(memory, width, height, stride);
}

}  // namespace

GlyphMask FontFace::make_mask(const GlyphPlace& place) {
  FT_Activate_Size(device_size_);
  if (place.width != device_width_ || place.height != device_height_) {
    FT_Size_RequestRec size{FT_SIZE_REQUEST_TYPE_NOMINAL, place.width, place.height, 0, 0};
    if (FT_Request_Size(face_, &size) != FT_Err_Ok)
      return {};
    device_width_ = place.width;
    device_height_ = place.height;
  }
  if (FT_Load_Glyph(face_, place.glyph, load_flags_) != FT_Err_Ok ||
      face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
    return {};
  FT_Outline& outline = face_->glyph->outline;
  if (embolden_)
    FT_Outline_EmboldenXY(&outline, place.width / emboldening, place.height / emboldening);
  constexpr FT_Pos quarter = static_cast<FT_Pos>(fractions) / 4;
  FT_Outline_Translate(&outline, place.quarter_x * quarter, -place.quarter_y * quarter);
  const PixelBounds box = bounds_of(outline);
  if (outline.n_points == 0 || box.empty())
    return {};
  FT_Outline_Translate(&outline, -FT_Pos{box.x0} * 64, -FT_Pos{box.y0} * 64);
  return {{box.x0, -box.y1, box.x1, -box.y0},
          rasterised(face_->glyph->library, outline, box.width(), box.height(), smooth_)};
}

// Outlines

namespace {

struct OutlineTarget {
  PathData& path;
  const Matrix& m;
  DevicePoint last{};
  bool open = false;

  DevicePoint point(const FT_Vector* v) const {
    return {static_cast<double>(v->x), static_cast<double>(v->y)};
  }
  static OutlineTarget& of(void* user) { return *static_cast<OutlineTarget*>(user); }
};

DevicePoint two_thirds_to(DevicePoint from, DevicePoint to) {
  return {from.x + (to.x - from.x) * 2 / 3, from.y + (to.y - from.y) * 2 / 3};
}

constexpr FT_Outline_Funcs outline_functions{
    [](const FT_Vector* to, void* user) {
      auto& target = OutlineTarget::of(user);
      target.path.close();
      target.last = target.point(to);
      target.path.move_to(target.m, target.last.x, target.last.y);
      return 0;
    },
    [](const FT_Vector* to, void* user) {
      auto& target = OutlineTarget::of(user);
      target.last = target.point(to);
      target.path.line_to(target.m, target.last.x, target.last.y);
      return 0;
    },
    [](const FT_Vector* control, const FT_Vector* to, void* user) {
      auto& target = OutlineTarget::of(user);
      const DevicePoint middle = target.point(control);
      const DevicePoint end = target.point(to);
      target.path.curve_to(target.m, {two_thirds_to(target.last, middle), two_thirds_to(end, middle), end});
      target.last = end;
      return 0;
    },
    [](const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
      auto& target = OutlineTarget::of(user);
      target.last = target.point(to);
      target.path.curve_to(target.m, {target.point(control1), target.point(control2), target.last});
      return 0;
    },
    0,
    0};

}  // namespace

void FontFace::add_outline(PathData& path, const Matrix& m, uint32_t glyph) {
  if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != FT_Err_Ok ||
      face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
    return;
  FT_Outline& outline = face_->glyph->outline;
  if (embolden_)
    FT_Outline_Embolden(&outline, face_->units_per_EM / emboldening);
  const Matrix from_units = scaled(m, 1.0 / face_->units_per_EM, -1.0 / face_->units_per_EM);
  OutlineTarget target{path, from_units};
  FT_Outline_Decompose(&outline, &outline_functions, &target);
  path.close();
}

}  // namespace cocoa
