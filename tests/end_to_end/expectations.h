// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <ostream>
#include <vector>

#include "interface_map.h"

namespace ondex::test {

/// A parameter as the user knows it.
struct Parameter {
  unsigned id;
  const char* outlet;
  double minimum;
  double maximum;
  double default_value;
  bool square_root;  ///< gestures are linear in the square root of the value
};

inline constexpr std::array<Parameter, 7> parameters = {{
    {0, "_tremolo_left_rate_parameter", 0, 20, 0, false},
    {1, "_tremolo_right_rate_parameter", 0, 20, 0, false},
    {2, "_tremolo_depth_parameter", 0, 1, 0.5, false},
    {3, "_tremolo_left_fm_mod_frequency_parameter", 0, 20, 0, true},
    {4, "_tremolo_left_fm_mod_index_parameter", 0, 20, 0, true},
    {5, "_tremolo_right_fm_mod_frequency_parameter", 0, 20, 0, true},
    {6, "_tremolo_right_fm_mod_index_parameter", 0, 20, 0, true},
}};
inline constexpr Parameter left_rate = parameters[0];
inline constexpr Parameter right_rate = parameters[1];
inline constexpr Parameter depth = parameters[2];
inline constexpr Parameter left_factor = parameters[3];
inline constexpr Parameter left_index = parameters[4];
inline constexpr Parameter right_factor = parameters[5];
inline constexpr Parameter right_index = parameters[6];

/// A "parameter ID VALUE" line.
struct Written {
  unsigned id = 0;
  double value = 0;
};
using Writes = std::vector<Written>;

inline std::ostream& operator<<(std::ostream& out, const Written& written) {
  return out << "parameter " << written.id << ' ' << written.value;
}

// The value of a parameter after a gesture that found it at `value`.

/// A drag of its readout, in points: 200 upwards cross the range, and 2000 to the right.
double after_drag(const Parameter& parameter, double value, double right, double up);
/// Notches of the wheel over its readout: 500 away from the user cross the range, and 5000 to the right.
double after_wheel(const Parameter& parameter, double value, double away, double right = 0);
/// Notches of the wheel over the knob: 1000 away from the user cross the range, and 1000 to the right.
double after_knob_wheel(const Parameter& parameter, double value, double away, double right = 0);
/// The pointer of the knob, the centre of which is given, brought to a place. Its travel goes from the lower
/// left clockwise through 270 degrees; below, the nearer end counts.
double knob_at(const Parameter& parameter, Position centre, Position pointer);

/// Checks the writes, to the precision of a float in the parameter's range.
void expect_writes(const Writes& writes, const Writes& expected);

}  // namespace ondex::test
