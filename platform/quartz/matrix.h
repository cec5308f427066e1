#pragma once

#include <cairo.h>

#include <cmath>

#include "quartz/CGAffineTransform.h"
#include "quartz/cairo_objects.h"

/// Private to this room: transforms as Cairo has them, in double precision whatever CGFloat is.

namespace cocoa {

inline constexpr cairo_matrix_t identity_matrix{1, 0, 0, 1, 0, 0};

inline cairo_matrix_t matrix_from(const CGAffineTransform& t) {
  return {static_cast<double>(t.a), static_cast<double>(t.b),  static_cast<double>(t.c),
          static_cast<double>(t.d), static_cast<double>(t.tx), static_cast<double>(t.ty)};
}
/// Null is the identity.
inline cairo_matrix_t matrix_from(const CGAffineTransform* t) {
  return t ? matrix_from(*t) : identity_matrix;
}
inline CGAffineTransform transform_from(const cairo_matrix_t& m) {
  return {static_cast<CGFloat>(m.xx), static_cast<CGFloat>(m.yx), static_cast<CGFloat>(m.xy),
          static_cast<CGFloat>(m.yy), static_cast<CGFloat>(m.x0), static_cast<CGFloat>(m.y0)};
}
inline bool finite(const cairo_matrix_t& m) {
  return std::isfinite(m.xx) && std::isfinite(m.yx) && std::isfinite(m.xy) && std::isfinite(m.yy) &&
         std::isfinite(m.x0) && std::isfinite(m.y0);
}
inline bool invertible(const cairo_matrix_t& m) {
  cairo_matrix_t copy = m;
  return cairo_matrix_invert(&copy) == CAIRO_STATUS_SUCCESS;
}

}  // namespace cocoa
