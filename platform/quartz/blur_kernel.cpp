// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "quartz/private/blur.h"

namespace cocoa {

namespace {

/// The average of a pixel, the `whole` pixels on each side of it and a `part` of the next one on each side.
std::vector<double> averaged(const std::vector<double>& values, int whole, double part) {
  const auto size = static_cast<int>(values.size());
  const double weight = 1 / (2 * whole + 1 + 2 * part);
  std::vector<double> result(values.size());
  for (int i = 0; i < size; ++i) {
    for (int k = std::max(0, i - whole - 1); k <= std::min(size - 1, i + whole + 1); ++k)
      result[static_cast<size_t>(i)] +=
          values[static_cast<size_t>(k)] * weight * (std::abs(k - i) > whole ? part : 1);
  }
  return result;
}

}  // namespace

BlurKernel blur_kernel(double radius, double shift) {
  const auto whole = static_cast<int>(radius);
  const int reach = static_cast<int>(std::ceil(radius)) + 1;
  std::vector<double> shape(static_cast<size_t>(2 * reach) + 1, 0);
  shape[static_cast<size_t>(reach)] = 1 - shift;
  shape[static_cast<size_t>(reach) - 1] = shift;
  shape = averaged(shape, (whole + 2) / 3, 0);
  shape = averaged(shape, (whole + 1) / 3, 0);
  shape = averaged(shape, whole / 3, radius - whole);
  // Rounded so that all together make a whole, but one alone would be too much for its type.
  BlurKernel kernel;
  double sum = 0;
  long given = 0;
  const auto is_used = [](double weight) { return weight > 0; };
  const auto first = std::find_if(shape.begin(), shape.end(), is_used);
  const auto last = std::find_if(shape.rbegin(), shape.rend(), is_used).base();
  for (auto weight = first; weight < last; ++weight) {
    sum += *weight;
    const long until = std::lround(std::min(sum, 1.0) * 65536);
    kernel.weights.push_back(static_cast<uint16_t>(std::min(until - given, 65535L)));
    given = until;
  }
  kernel.before = reach - static_cast<int>(first - shape.begin());
  return kernel;
}

}  // namespace cocoa
