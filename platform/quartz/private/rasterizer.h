// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quartz/private/polygon.h"

/// From outlines to coverage.

namespace cocoa {

/// Finds how much of each pixel lies inside a polygon: the exact area, of 255, where contours cross or cover
/// each other too. Keeps its memory from polygon to polygon.
///
/// A row of pixels is swept from left to right. Edges whose extents in it touch form a group; between groups
/// the winding number is the same at every height of the row. A group of one edge that separates inside
/// from outside covers a trapezoid of each pixel, and so does each edge of a group of which none cross. Any
/// other group is divided at every height where an edge begins, ends or crosses another, into bands that have
/// one winding number between two neighbours each. What a row comes out as depends on the edges in it alone,
/// not on the part that is asked for.
class Rasterizer {
 public:
  /// Sets the bytes of all pixels of `area`, the first of which is at `bytes`.
  void draw(const Polygon& polygon, FillRule rule, PixelBounds area, uint8_t* bytes, size_t bytes_per_row);

 private:
  /// Along a row, in fractions of a pixel so small that an edge may be followed by adding up: over the
  /// greatest height that there is, it is off by less than a fifty-thousandth of a pixel.
  using Place = int64_t;
  struct Edge {
    Place x;            ///< where it is when it comes into the row, or begins in it
    Place next_x;       ///< where it leaves it, or ends
    Place left, right;  ///< of these two
    Place step;         ///< from row to row
    int32_t height;     ///< what it has of the row, in steps of the grid
    int32_t top;        ///< where that begins
    int32_t direction;  ///< 1 when the contour runs downwards, −1 upwards, 0 along the row
    int32_t last_row;
    GridPoint end;  ///< the lower one
    int32_t next;   ///< that begins in the same row
  };
  /// What an edge has in a band.
  struct Span {
    double top, bottom;  ///< x
    int direction;
  };

  void set_edges(const Polygon& polygon);
  void add_edge(GridPoint from, GridPoint to);
  /// Cuts the edges by the row, which follows the last one, and puts those that are in it in order.
  void go_to_row(int row);
  static void set_bounds(Edge& edge);
  /// Puts it among those before `end`, behind all that do not lie further right.
  static void insert(Edge& edge, Edge** end);
  void sweep();
  /// Adds what a group that ends at `right` covers; from the winding number on its left it makes that on its
  /// right.
  int add_group(const Edge* const* first, const Edge* const* last, Place right, int winding);
  /// Whether its edges take their turns from above to below, or from left to right.
  static bool is_chain(const Edge& a, const Edge& b);
  static bool is_in_order(const Edge* const* first, const Edge* const* last);
  /// Adds one that has the same winding number at all its heights on either side.
  int add_edge_in_order(const Edge& edge, int winding);
  void add_bands(const Edge* const* first, const Edge* const* last, int winding);
  void add_band(double height, int winding);
  void add_spans(double height, int winding);
  /// Of the band, how much lies above the first place where two spans cross; 1 when none do.
  double part_before_crossing() const;
  /// Ends the spans there, and begins others.
  void split_spans(double part);
  /// Adds what lies right of a line between two places within a band, by which the sum of the row grows by
  /// `all`.
  void add_line(Place left, Place right, int32_t all);
  /// The same for one that passes pixels, or lies beyond the left side.
  void add_long_line(Place left, Place right, int32_t all);
  /// Sums the cells up into coverage, and empties them.
  void write_row(uint8_t* out);
  bool inside(int winding) const { return (winding & rule_bits_) != 0; }

  int rule_bits_ = 0;  ///< of a winding number, those that say that it is inside
  PixelBounds area_;
  uint64_t width_ = 0;  ///< of the area
  std::vector<Edge> edges_;
  std::vector<int32_t> first_in_row_;
  std::vector<Edge*> active_;    ///< left to right, between two that no other touches
  Edge** active_end_ = nullptr;  ///< where the second of these is
  Edge before_all_{};
  Edge behind_all_{};
  std::vector<int32_t> heights_;
  std::vector<Span> spans_;
  std::vector<Span> spans_below_;
  std::vector<int32_t> cells_;  ///< by how much each pixel's coverage exceeds that of the one before
  int32_t added_ = 0;           ///< to cells by the bands of a group
};

}  // namespace cocoa
