// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <optional>

#include "quartz/CGAffineTransform.h"
#include "quartz/private/pixels.h"

/// Transforms in double precision whatever CGFloat is.

namespace cocoa {

/// x' = xx·x + xy·y + x0, y' = yx·x + yy·y + y0.
struct Matrix {
  double xx = 1;
  double yx = 0;
  double xy = 0;
  double yy = 1;
  double x0 = 0;
  double y0 = 0;

  DevicePoint apply(double x, double y) const { return {xx * x + xy * y + x0, yx * x + yy * y + y0}; }
  double determinant() const { return xx * yy - yx * xy; }
};

inline constexpr Matrix identity_matrix{};

inline Matrix matrix_from(const CGAffineTransform& t) {
  return {static_cast<double>(t.a), static_cast<double>(t.b),  static_cast<double>(t.c),
          static_cast<double>(t.d), static_cast<double>(t.tx), static_cast<double>(t.ty)};
}
/// Null is the identity.
inline Matrix matrix_from(const CGAffineTransform* t) {
  return t ? matrix_from(*t) : identity_matrix;
}
inline CGAffineTransform transform_from(const Matrix& m) {
  return {static_cast<CGFloat>(m.xx), static_cast<CGFloat>(m.yx), static_cast<CGFloat>(m.xy),
          static_cast<CGFloat>(m.yy), static_cast<CGFloat>(m.x0), static_cast<CGFloat>(m.y0)};
}
inline bool finite(const Matrix& m) {
  return std::isfinite(m.xx) && std::isfinite(m.yx) && std::isfinite(m.xy) && std::isfinite(m.yy) &&
         std::isfinite(m.x0) && std::isfinite(m.y0);
}
/// `first`, then `second`.
inline Matrix product(const Matrix& first, const Matrix& second) {
  const DevicePoint origin = second.apply(first.x0, first.y0);
  return {first.xx * second.xx + first.yx * second.xy,
          first.xx * second.yx + first.yx * second.yy,
          first.xy * second.xx + first.yy * second.xy,
          first.xy * second.yx + first.yy * second.yy,
          origin.x,
          origin.y};
}
/// Nothing for a matrix that makes the plane a line or a point.
inline std::optional<Matrix> inverse(const Matrix& m) {
  const double determinant = m.determinant();
  if (determinant == 0 || !std::isfinite(determinant))
    return std::nullopt;
  const Matrix result{m.yy / determinant,
                      -m.yx / determinant,
                      -m.xy / determinant,
                      m.xx / determinant,
                      (m.xy * m.y0 - m.yy * m.x0) / determinant,
                      (m.yx * m.x0 - m.xx * m.y0) / determinant};
  return finite(result) ? std::optional(result) : std::nullopt;
}

inline bool invertible(const Matrix& m) {
  return inverse(m).has_value();
}
/// The transform after a move, or a change of size, of what is to be transformed.
inline Matrix moved(const Matrix& m, double dx, double dy) {
  return product({1, 0, 0, 1, dx, dy}, m);
}
inline Matrix scaled(const Matrix& m, double sx, double sy) {
  return product({sx, 0, 0, sy, 0, 0}, m);
}

}  // namespace cocoa
