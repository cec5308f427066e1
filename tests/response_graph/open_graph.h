// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "response_graph/KV_FM_Oscillator_Response_View.h"

namespace ondex::test {

/// Opens the fields of the graph to the tests.
class OpenGraph : public KV_FM_Oscillator_Response_View {
 public:
  explicit OpenGraph(cocoa::NSRect frame) : KV_FM_Oscillator_Response_View(frame) {}
  using KV_FM_Oscillator_Response_View::_body_panel_rect;
  using KV_FM_Oscillator_Response_View::_body_rect;
  using KV_FM_Oscillator_Response_View::_control_rect;
  using KV_FM_Oscillator_Response_View::_curve_color;
  using KV_FM_Oscillator_Response_View::_curve_path;
  using KV_FM_Oscillator_Response_View::_fill_color;
  using KV_FM_Oscillator_Response_View::_graph_frame;
  using KV_FM_Oscillator_Response_View::_left_rect;
  using KV_FM_Oscillator_Response_View::_right_rect;
  using KV_FM_Oscillator_Response_View::_text_color;
};

inline constexpr float four_pi = 12.566371F;

/// A graph with the ranges of the editor: two periods, a little more than the amplitude. Its plotting area is
/// (5, 5, 200, 88), so that a sample is 2 points wide and 40 points stand for 1.
inline cocoa::Ref<OpenGraph> editor_graph() {
  auto graph = cocoa::make<OpenGraph>(cocoa::NSMakeRect(3, 4, 210, 98));
  graph->set_y_minimum_maximum(-1.1F, 1.1F);
  graph->set_x_minimum_maximum(0, four_pi);
  return graph;
}

/// The height of the editor's graph's curve at a position of the view, worked out in double precision.
inline double curve_height(double position, double m, double beta) {
  const double x = (position - 5) / 200 * static_cast<double>(four_pi);
  return 5 + 44 + 40 * std::sin(x + m * std::sin(beta * x));
}

inline cocoa::Ref<cocoa::NSColor> device_color(double red, double green, double blue, double alpha) {
  return cocoa::NSColor::colorWithDeviceRed_green_blue_alpha(
      static_cast<cocoa::CGFloat>(red), static_cast<cocoa::CGFloat>(green), static_cast<cocoa::CGFloat>(blue),
      static_cast<cocoa::CGFloat>(alpha));
}

}  // namespace ondex::test
