// SPDX-License-Identifier: MIT
#pragma once

#include "knob/KV_Ondex_Big_Knob_View.h"

namespace ondex::test {

/// Opens the fields of the knob to the tests. Its bounds are 100 points square: the centre lies at (50, 50)
/// and the pointer runs on a circle of 33 points.
class OpenKnob : public KV_Ondex_Big_Knob_View {
 public:
  explicit OpenKnob(cocoa::NSRect frame = cocoa::NSMakeRect(0, 0, 100, 100))
      : KV_Ondex_Big_Knob_View(frame) {}
  using KV_Ondex_Big_Knob_View::_control_rect;
  using KV_Ondex_Big_Knob_View::_default_value;
  using KV_Ondex_Big_Knob_View::_knob_hit_path;
  using KV_Ondex_Big_Knob_View::_knob_rect;
  using KV_Ondex_Big_Knob_View::_maximum_value;
  using KV_Ondex_Big_Knob_View::_minimum_value;
  using KV_Ondex_Big_Knob_View::_mouse_is_down;
  using KV_Ondex_Big_Knob_View::_origin;
  using KV_Ondex_Big_Knob_View::_radius;
  using KV_Ondex_Big_Knob_View::_rotation_scale;
  using KV_Ondex_Big_Knob_View::_scale;
  using KV_Ondex_Big_Knob_View::_theta_max;
  using KV_Ondex_Big_Knob_View::_theta_min;
  using KV_Ondex_Big_Knob_View::_value;
  using KV_Ondex_Big_Knob_View::_x;
  using KV_Ondex_Big_Knob_View::_y;

  /// Range, default value at the minimum, scale type and value, in the order in which the editor sets them.
  void show(double minimum, double maximum, int32_t scale_type, double value) {
    set_values_minimum_maximum_default_value_scale_type(minimum, maximum, minimum, scale_type);
    set_current_value(value);
  }
};

}  // namespace ondex::test
