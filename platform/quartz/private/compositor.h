// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quartz/private/color_model.h"
#include "quartz/private/coverage.h"
#include "quartz/private/pixels.h"

/// Colours through coverage over pixels.

namespace cocoa {

/// A premultiplied colour, 256 times as fine as a pixel holds it.
struct FineColor {
  static constexpr uint32_t full = 255 << 8;
  uint16_t channel[4];  ///< blue, green, red, alpha
  bool operator==(const FineColor&) const = default;
  bool is_nothing() const { return channel[3] == 0; }
  bool is_opaque() const { return channel[3] == full; }
  /// The nearest pixel.
  uint32_t pixel() const {
    uint32_t result = 0;
    for (uint32_t i = 0; i < 4; ++i)
      result |= ((channel[i] + 128U) >> 8) << (8 * i);
    return result;
  }
};

/// With `alpha` on top of that of the colour.
FineColor fine_color(const Rgba& color, double alpha);

/// With `alpha` on top, too.
FineColor faded(FineColor color, double alpha);

/// Colours of pixels side by side.
struct Colors {
  const FineColor* first;
  bool is_one;  ///< the first stands for all
  /// The same as pixels, which must be opaque, or null.
  const uint32_t* pixels = nullptr;
  /// Those of the pixels from the index on.
  Colors from(int i) const {
    return is_one ? *this : Colors{first + i, false, pixels ? pixels + i : nullptr};
  }
};

/// Where colours come from. It knows nothing of shapes.
class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;
  /// Those of a row of device pixels, from x0 up to x1; valid until the next call.
  virtual Colors row(int y, int x0, int x1) = 0;
  /// The colour of all pixels, if they have one.
  virtual const FineColor* one_color() const { return nullptr; }
  /// Adds what alpha depends on besides the pixel; false when that is too much to tell.
  virtual bool add_alpha_to(CoverageCache::Key&) const { return false; }
};

class PlainSource : public Source {
 public:
  explicit PlainSource(FineColor color) : color_(color) {}
  Colors row(int, int, int) override { return {&color_, true}; }
  bool add_alpha_to(CoverageCache::Key& key) const override {
    key.push_back(color_.channel[3]);
    return true;
  }
  const FineColor* one_color() const override { return &color_; }

 private:
  FineColor color_;
};

/// Premultiplied pixels, alpha in the highest byte.
struct PixelView {
  uint32_t* data;  ///< the pixel at (bounds.x0, bounds.y0)
  size_t pixels_per_row;
  PixelBounds bounds;
  uint32_t* row(int y) const { return data + static_cast<size_t>(y - bounds.y0) * pixels_per_row; }
  uint32_t* at(int x, int y) const { return row(y) + (x - bounds.x0); }
};

/// Pixels as a source, only within their bounds.
class PictureSource : public Source {
 public:
  /// The pixels must outlive it.
  PictureSource(const PixelView& pixels, double alpha);
  Colors row(int y, int x0, int x1) override;

 private:
  PixelView pixels_;
  uint32_t transparency_;  ///< of 65535
  std::vector<FineColor> colors_;
};

/// Paints each pixel over the one below: the colour by the coverage, which is everywhere when it is null, and
/// the pixel by what the colour leaves. The result is within 0.51 of 255 of the exact one, exact where
/// nothing or all shows, and the same for a pixel wherever it stands.
void blend_row(uint32_t* pixels, size_t count, const Colors& colors, const uint8_t* coverage);

/// Takes the covered part of each pixel away.
void clear_row(uint32_t* pixels, size_t count, const uint8_t* coverage);

/// Paints the source on the pixels through both coverages.
void paint(const PixelView& pixels, const Coverage& shape, const Coverage& clip, Source& source);
void clear(const PixelView& pixels, const Coverage& shape, const Coverage& clip);

}  // namespace cocoa
