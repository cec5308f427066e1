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
/// from outside covers a trapezoid of each pixel. Any other group is divided at every height where an edge
/// begins, ends or crosses another, into bands that have one winding number between two neighbours each. What
/// a row comes out as depends on the edges in it alone, not on the part that is asked for.
class Rasterizer {
 public:
  /// Sets the bytes of all pixels of `area`, the first of which is at `bytes`.
  void draw(const Polygon& polygon, FillRule rule, PixelBounds area, uint8_t* bytes, size_t bytes_per_row);

 private:
  struct Edge {
    double x0, y0, x1, y1;  ///< downwards
    double slope;
    int direction;  ///< 1 when the contour runs downwards, −1 upwards, 0 along the row
    int next;       ///< that begins in the same row
  };
  /// What an edge has in the row, heights from the row's top.
  struct Piece {
    double top, bottom;
    double x_top, x_bottom;
    int direction;
  };
  struct Entry {
    double left, right;
    int edge;
  };
  /// What a piece has in a band.
  struct Span {
    double top, bottom;  ///< x
    int direction;
  };

  void set_edges(const Polygon& polygon);
  void add_edge(DevicePoint from, DevicePoint to);
  void cut_edges(int row);
  void sort_entries();
  void sweep(uint8_t* out);
  /// Adds what a group that ends at `right` covers; the winding number on its left becomes that on its right.
  void add_group(const Entry* first, const Entry* last, double right, int& winding);
  void add_bands(const Entry* first, const Entry* last, int winding);
  void add_band(double height, int winding);
  void add_spans(double height, int winding);
  /// Of the band, how much lies above the first place where two spans cross; 1 when none do.
  double part_before_crossing() const;
  /// Ends the spans there, and begins others.
  void split_spans(double part);
  /// Adds what lies right of a line between two x within a band, and answers by how much that raises the sum
  /// of the row.
  int32_t add_line(double xa, double xb, double height, int sign);
  /// Sums the cells up into coverage, and empties them.
  void write_row(uint8_t* out);
  int inside(int winding) const { return rule_ == FillRule::even_odd ? winding & 1 : winding != 0; }

  FillRule rule_ = FillRule::nonzero;
  PixelBounds area_;
  std::vector<Edge> edges_;
  std::vector<int> first_in_row_;
  std::vector<Entry> active_;  ///< left to right
  std::vector<Piece> pieces_;  ///< of the edge with the same index
  std::vector<double> heights_;
  std::vector<Span> spans_;
  std::vector<Span> spans_below_;
  std::vector<int32_t> cells_;  ///< by how much each pixel's coverage exceeds that of the one before
  int32_t added_ = 0;           ///< to cells by the lines of a group
};

}  // namespace cocoa
