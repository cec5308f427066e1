// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "quartz/private/polygon.h"

/// What lies inside a polygon, worked out without regard to time.

namespace cocoa {

struct TestEdge {
  double x0, y0, x1, y1;  ///< downwards
  int direction;
  double at(double y) const { return x0 + (y - y0) * (x1 - x0) / (y1 - y0); }
};

inline std::vector<TestEdge> edges_of(const Polygon& polygon) {
  std::vector<TestEdge> edges;
  const auto in_pixels = [](GridPoint p) { return DevicePoint{p.x / 256.0, p.y / 256.0}; };
  size_t begin = 0;
  for (const size_t end : polygon.ends()) {
    for (size_t i = begin; i < end; ++i) {
      const DevicePoint a = in_pixels(polygon.points()[i]);
      const DevicePoint b = in_pixels(polygon.points()[i + 1 < end ? i + 1 : begin]);
      if (a.y < b.y)
        edges.push_back({a.x, a.y, b.x, b.y, 1});
      if (a.y > b.y)
        edges.push_back({b.x, b.y, a.x, a.y, -1});
    }
    begin = end;
  }
  return edges;
}

inline bool is_inside(int winding, FillRule rule) {
  return rule == FillRule::even_odd ? winding % 2 != 0 : winding != 0;
}

/// How much of the pixel is inside, 0 to 1: the pixel is cut at every height at which an edge begins or ends,
/// crosses another or one of the pixel's sides; what lies between two heights is trapezoids.
inline double exact_coverage(const std::vector<TestEdge>& all, FillRule rule, int x, int y) {
  std::vector<TestEdge> edges;
  for (const TestEdge& e : all) {
    if (e.y1 > y && e.y0 < y + 1)
      edges.push_back(e);
  }
  std::vector<double> heights{static_cast<double>(y), y + 1.0};
  const auto add_height = [&](double h) {
    if (h > y && h < y + 1)
      heights.push_back(h);
  };
  for (size_t i = 0; i < edges.size(); ++i) {
    const TestEdge& a = edges[i];
    add_height(a.y0);
    add_height(a.y1);
    const double slope = (a.x1 - a.x0) / (a.y1 - a.y0);
    for (const double side : {x, x + 1}) {
      if (slope != 0)
        add_height(a.y0 + (side - a.x0) / slope);
    }
    for (size_t k = 0; k < i; ++k) {
      const TestEdge& b = edges[k];
      const double other = (b.x1 - b.x0) / (b.y1 - b.y0);
      if (slope == other)
        continue;
      const double crossing = (b.x0 - b.y0 * other - a.x0 + a.y0 * slope) / (slope - other);
      if (crossing > std::max(a.y0, b.y0) && crossing < std::min(a.y1, b.y1))
        add_height(crossing);
    }
  }
  std::sort(heights.begin(), heights.end());
  double area = 0;
  for (size_t i = 1; i < heights.size(); ++i) {
    const double middle = (heights[i - 1] + heights[i]) / 2;
    std::vector<std::pair<double, int>> places;
    for (const TestEdge& e : edges) {
      if (e.y0 <= middle && e.y1 > middle)
        places.emplace_back(e.at(middle), e.direction);
    }
    std::sort(places.begin(), places.end());
    int winding = 0;
    for (size_t k = 0; k + 1 < places.size(); ++k) {
      winding += places[k].second;
      if (is_inside(winding, rule)) {
        area += (std::clamp(places[k + 1].first, x + 0.0, x + 1.0) -
                 std::clamp(places[k].first, x + 0.0, x + 1.0)) *
                (heights[i] - heights[i - 1]);
      }
    }
  }
  return area;
}

/// The share of 16 × 16 places within the pixel that are inside.
inline double sampled_coverage(const std::vector<TestEdge>& edges, FillRule rule, int x, int y) {
  constexpr int samples = 16;
  int hits = 0;
  for (int row = 0; row < samples; ++row) {
    const double height = y + (row + 0.5) / samples;
    for (int column = 0; column < samples; ++column) {
      int winding = 0;
      for (const TestEdge& e : edges) {
        if (e.y0 <= height && e.y1 > height && e.at(height) <= x + (column + 0.5) / samples)
          winding += e.direction;
      }
      hits += is_inside(winding, rule) ? 1 : 0;
    }
  }
  return hits / (1.0 * samples * samples);
}

}  // namespace cocoa
