// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// How a parameter's values spread over the travel of a control.
///
/// A scale type maps a plain value, which is what is shown and written to the effect, to a mapped value, in
/// which gestures are linear. Ranges under the logarithm must be positive, under the square root not
/// negative; other values follow IEEE arithmetic and nothing checks them.

namespace ondex {

enum : int32_t {
  scale_type_linear = 0,       ///< v, back p; so does every number not named here
  scale_type_logarithmic = 1,  ///< log10(v), back 10 to the power of p
  scale_type_square_root = 2,  ///< sqrt(v), back p × p
};

double mapped_value(int32_t scale_type, double plain);
double plain_value(int32_t scale_type, double mapped);

/// The value brought inside a range. What is not a number becomes the minimum.
double clamped(double value, double minimum, double maximum);

}  // namespace ondex
