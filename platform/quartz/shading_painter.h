#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

#include "quartz/cairo_objects.h"
#include "quartz/pixels.h"
#include "quartz/shading.h"

/// Private to this room: the colours of a shading in device pixels.

namespace cocoa {

/// Pixels of `bounds`, premultiplied, alpha in the highest byte.
struct PixelView {
  uint32_t* data;  ///< the pixel at (bounds.x0, bounds.y0)
  size_t pixels_per_row;
  PixelBounds bounds;
  uint32_t* row(int y) const { return data + static_cast<size_t>(y - bounds.y0) * pixels_per_row; }
};

/// A premultiplied colour, finer than a pixel holds it.
struct FineColor {
  uint32_t channel[4];  ///< blue, green, red, alpha; 256 × 255 is full
  uint32_t rest;        ///< what remains of the colour below, of 65536
  bool is_nothing() const { return rest == 65536; }
  bool is_opaque() const { return rest == 0; }
  uint32_t pixel() const;
  uint32_t over(uint32_t below) const;
};

/// Colours found so far, kept from shading to shading for their memory only.
struct ColorTable {
  std::vector<uint32_t> colors;
  std::vector<uint8_t> known;
};

/// Evaluates a shading at the centres of pixels. One whose colour varies along pixel rows or columns only is
/// evaluated once for each of them; any other through a table of its colours, fine enough that the nearest
/// entry is the colour of a place less than half a pixel away.
class ShadingPainter {
 public:
  /// `to_device` takes the shading's coordinates to device pixels. `alpha` is applied on top.
  ShadingPainter(const CGShading& shading, const cairo_matrix_t& to_device, double alpha, ColorTable& table);

  /// Replaces the pixels; they are transparent where the shading does not paint.
  void fill(const PixelView& view);
  /// Paints over the pixels.
  void paint_over(const PixelView& view);

 private:
  enum class Kind { nothing, by_row, by_column, axial, radial };

  void prepare_axial();
  void prepare_radial();
  /// Whether t, as extended, or no further than `beyond` from an end, is painted; then it is brought into 0
  /// to 1.
  bool place(double& t, double beyond = 0) const;
  FineColor color(double t) const;
  FineColor color_or_nothing(double t, double beyond) const;
  /// Of a row or column of pixels, along which t grows by `slope`.
  FineColor line_color(int i, double slope) const;
  void paint_columns_over(const PixelView& view);
  uint32_t table_color(double t);
  bool radial_place(double x, double y, double& t) const;
  bool is_at_an_end(double px, double py, double& t) const;
  uint32_t general_pixel(int x, int y);
  std::vector<FineColor> line_colors(int first, int last, double slope) const;

  const CGShading& shading_;
  cairo_matrix_t to_user_;
  double alpha_;
  ColorTable& table_;
  Kind kind_ = Kind::nothing;
  // Axial: t = slope_x · x + slope_y · y + offset, in device pixels.
  double slope_x_ = 0;
  double slope_y_ = 0;
  double offset_ = 0;
  // Radial: the vector between the centres, the difference of the radii, and the quadratic coefficient.
  double dx_ = 0;
  double dy_ = 0;
  double dr_ = 0;
  double a_ = 0;
  double half_a_pixel_ = 0;  ///< in the shading's coordinates
};

}  // namespace cocoa
