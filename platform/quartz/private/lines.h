// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "quartz/private/matrix.h"
#include "quartz/private/pixels.h"
#include "quartz/private/polygon.h"

/// Paths whose curves have become lines, and what filling and stroking makes of them.

namespace cocoa {

/// Sub-paths, in device pixels.
struct Lines {
  struct SubPath {
    size_t end;  ///< behind its last point
    bool closed;
    bool operator==(const SubPath&) const = default;
  };
  std::vector<DevicePoint> points;
  std::vector<SubPath> sub_paths;
};

enum class LineCap { butt, round, square };
enum class LineJoin { miter, round, bevel };

/// Round, in user space.
struct Pen {
  double width = 1;
  double miter_limit = 10;  ///< of a miter's length, in widths
  LineCap cap = LineCap::butt;
  LineJoin join = LineJoin::miter;
};

/// All sub-paths closed.
void fill_outline(const Lines& lines, Polygon& outline);

/// How far a stroke reaches from its path at most, in device pixels.
double stroke_reach(const Pen& pen, const Matrix& m);

/// The outline of what the pen paints, to be filled by the non-zero rule. `to_device` takes user space to
/// device pixels; without an inverse there is nothing to paint. A sub-path without length becomes a dot when
/// caps are round or square, unless it is only a place to begin.
void stroke_outline(const Lines& lines, const Pen& pen, const Matrix& to_device, Polygon& outline);

}  // namespace cocoa
