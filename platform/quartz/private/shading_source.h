// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "quartz/private/compositor.h"
#include "quartz/private/matrix.h"
#include "quartz/private/pixels.h"
#include "quartz/private/shading.h"

/// The colours of a shading in device pixels.

namespace cocoa {

/// Of an entry of a table: no colour has that alpha.
inline constexpr FineColor unknown_color{UINT16_MAX, UINT16_MAX, UINT16_MAX, UINT16_MAX};

/// Evaluates a shading at the centres of pixels, transparent where it does not paint. One whose colour varies
/// along pixel rows, columns or diagonals only is evaluated once for each of them; any other through a table
/// of its colours, fine enough that the nearest entry is the colour of a place less than half a pixel away,
/// which is filled on demand and kept by the shading.
class ShadingSource : public Source {
 public:
  static constexpr int table_steps = 8192;

  /// `to_device` takes the shading's coordinates to device pixels. `alpha` is applied on top. Only pixels of
  /// `area` may be asked for. A shading has one source at a time.
  ShadingSource(const CGShading& shading, const Matrix& to_device, double alpha, PixelBounds area);
  Colors row(int y, int x0, int x1) override;
  bool add_alpha_to(CoverageCache::Key& key) const override;
  /// The part of the area that it may paint.
  const PixelBounds& painted() const { return painted_; }

 private:
  enum class Kind { nothing, by_row, by_column, by_diagonal, axial, rings, radial };

  void prepare_axial();
  void prepare_radial();
  /// Evaluates at `count` places along a row, from `first` on, each a pixel from the one before.
  void prepare_line(double first, int count, double beyond);
  /// Finds what is painted of the columns.
  void prepare_columns();
  FineColor row_color(int y) const;
  /// Whether t, as extended, or no further than `beyond` from an end, is painted; then it is brought into 0
  /// to 1.
  bool place(double& t, double beyond = 0) const;
  FineColor color(double t) const;
  FineColor color_or_nothing(double t, double beyond) const;
  const FineColor& table_color(double t);
  void add_to_table(FineColor& entry);
  /// Whether t, the place of that pixel's centre, is painted; then it is brought into 0 to 1.
  bool is_painted(int x, int y, double& t) const;
  /// Sets the colours of pixels side by side from their places.
  void color_places(const double* places, int x, int y, int count, FineColor* to);
  /// Sets the colours of a row. `place(x)` is that of a column.
  template <typename Place>
  void fill(int y, int x0, int x1, const Place& place);
  bool radial_place(double x, double y, double& t) const;
  bool is_at_an_end(double px, double py, double& t) const;
  void fill_axial(int y, int x0, int x1);
  void fill_rings(int y, int x0, int x1);
  void fill_radial(int y, int x0, int x1);

  const CGShading& shading_;
  Matrix to_device_;
  Matrix to_user_;
  double alpha_;
  Kind kind_ = Kind::nothing;
  PixelBounds painted_;
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
  // By column or diagonal: the colour of (x, y) is that at x + direction · y − first.
  int direction_ = 0;
  int first_ = 0;
  std::vector<FineColor> colors_;  ///< of that line, or of the last row
  std::vector<uint32_t> pixels_;   ///< by column, when all that are painted are opaque
};

}  // namespace cocoa
