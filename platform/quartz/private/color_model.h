// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "quartz/CGColor.h"
#include "quartz/private/counted.h"

/// What colours are made of.

namespace cocoa {

enum class ColorModel { gray, rgb, cmyk };

constexpr size_t component_count(ColorModel model) {
  return model == ColorModel::gray ? 1 : model == ColorModel::rgb ? 3 : 4;
}

/// Components and alpha of the widest model.
inline constexpr size_t max_components = 5;

/// Not premultiplied, 0 to 1.
struct Rgba {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
};

/// Clamped to 0 to 1; what is not a number becomes 0.
constexpr double unit_value(double v) {
  return v > 0 ? std::min(v, 1.0) : 0.0;
}

/// `components` holds component_count(model) values and alpha.
constexpr Rgba rgba_from_components(ColorModel model, const CGFloat* components) {
  const auto at = [components](size_t i) { return unit_value(static_cast<double>(components[i])); };
  switch (model) {
    case ColorModel::gray:
      return {at(0), at(0), at(0), at(1)};
    case ColorModel::rgb:
      return {at(0), at(1), at(2), at(3)};
    case ColorModel::cmyk:
      break;
  }
  const double white = 1 - at(3);
  return {(1 - at(0)) * white, (1 - at(1)) * white, (1 - at(2)) * white, at(4)};
}

struct CGColorSpace : Counted {
  explicit CGColorSpace(ColorModel color_model) : model(color_model) {}
  const ColorModel model;
};

struct CGColor : Counted {
  CGColor(CGColorSpaceRef color_space, const CGFloat* values)
      : space(CGColorSpaceRetain(color_space)),
        components(values, values + component_count(space->model) + 1) {}
  ~CGColor() { CGColorSpaceRelease(space); }
  Rgba rgba() const { return rgba_from_components(space->model, components.data()); }

  CGColorSpaceRef space;
  const std::vector<CGFloat> components;
};

}  // namespace cocoa
