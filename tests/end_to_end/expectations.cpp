// SPDX-License-Identifier: MIT
#include "expectations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ondex::test {

namespace {

double mapped(const Parameter& parameter, double value) {
  return parameter.square_root ? std::sqrt(value) : value;
}
double plain(const Parameter& parameter, double position) {
  const double value = parameter.square_root ? position * position : position;
  return std::clamp(value, parameter.minimum, parameter.maximum);
}
double travel(const Parameter& parameter) {
  return mapped(parameter, parameter.maximum) - mapped(parameter, parameter.minimum);
}

/// The knob stops at the ends of its travel.
double knob_value(const Parameter& parameter, double part) {
  return plain(parameter,
               mapped(parameter, parameter.minimum) + std::clamp(part, 0.0, 1.0) * travel(parameter));
}

}  // namespace

double after_drag(const Parameter& parameter, double value, double right, double up) {
  return plain(parameter, mapped(parameter, value) + (up / 200 + right / 2000) * travel(parameter));
}

double after_wheel(const Parameter& parameter, double value, double away, double right) {
  return plain(parameter, mapped(parameter, value) + (away / 500 + right / 5000) * travel(parameter));
}

double after_knob_wheel(const Parameter& parameter, double value, double away, double right) {
  const double before = (mapped(parameter, value) - mapped(parameter, parameter.minimum)) / travel(parameter);
  return knob_value(parameter, before + (away + right) / 1000);
}

double knob_at(const Parameter& parameter, Position centre, Position pointer) {
  const double right = pointer.x - centre.x;
  const double up = pointer.y - centre.y;
  // Clockwise from straight down; exactly below is the end of the round.
  double clockwise = 180 + std::atan2(right, up) * 180 / std::numbers::pi;
  if (right == 0 && up < 0)
    clockwise = 360;
  return knob_value(parameter, (clockwise - 45) / 270);
}

void expect_writes(const Writes& writes, const Writes& expected) {
  EXPECT_EQ(writes.size(), expected.size()) << testing::PrintToString(writes);
  for (size_t i = 0; i < std::min(writes.size(), expected.size()); ++i) {
    EXPECT_EQ(writes[i].id, expected[i].id) << "of write " << i;
    const double precision =
        1e-6 * (expected[i].id < parameters.size() ? parameters.at(expected[i].id).maximum : 1);
    EXPECT_NEAR(writes[i].value, expected[i].value, precision) << "of write " << i;
  }
}

}  // namespace ondex::test
