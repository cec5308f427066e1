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

}  // namespace ondex
