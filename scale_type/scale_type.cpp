// SPDX-License-Identifier: MIT
#include "scale_type/scale_type.h"

#include <cmath>

namespace ondex {

double mapped_value(int32_t scale_type, double plain) {
  if (scale_type == scale_type_logarithmic)
    return std::log10(plain);
  if (scale_type == scale_type_square_root)
    return std::sqrt(plain);
  return plain;
}

double plain_value(int32_t scale_type, double mapped) {
  if (scale_type == scale_type_logarithmic)
    return std::pow(10.0, mapped);
  if (scale_type == scale_type_square_root)
    return mapped * mapped;
  return mapped;
}

// Not-a-number fails the first comparison.
double clamped(double value, double minimum, double maximum) {
  if (!(value >= minimum))
    return minimum;
  if (value > maximum)
    return maximum;
  return value;
}

}  // namespace ondex
