// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSView.h"
#include "drawing/shading.h"

namespace ondex {

/// The waveform of a frequency-modulated oscillator, y = sin(x + m sin(beta x)), as a filled and stroked
/// curve in a capsule. x is the carrier's phase in radians, m the modulation index, beta the ratio of
/// modulator to carrier.
///
/// Operations take and give floats; the fields are CGFloats. The curve is built when the index or the factor
/// is set; a change of the ranges shows with the next one. The view takes no mouse input.
class KV_FM_Oscillator_Response_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// Works for any frame of at least 10 by 10 points.
  explicit KV_FM_Oscillator_Response_View(cocoa::NSRect frame);
  void awakeFromNib() override;

  /// The stretch of phase and of amplitude that is shown.
  void set_x_minimum_maximum(float minimum, float maximum);
  void set_y_minimum_maximum(float minimum, float maximum);
  /// Between phase or amplitude and the view's coordinates.
  float location_for_x(float x) const;
  float location_for_y(float y) const;
  float x_for_location(float location) const;
  float y_for_location(float location) const;
  float response_for_value(float x) const;

  void set_modulation_index(float index);
  void set_modulation_factor(float factor);
  /// A null colour leaves the one there is. Shown with the next redraw.
  void set_curve_color_fill_color(cocoa::NSColor* curve, cocoa::NSColor* fill);
  void set_text_color(cocoa::NSColor* color);

  void draw_background();
  /// Rebuilds the curve.
  void drawGraph();
  void drawRect(cocoa::NSRect dirty) override;
  void do_body_panel(cocoa::CGContextRef context);
  void do_left_end_cap(cocoa::CGContextRef context);
  void do_right_end_cap(cocoa::CGContextRef context);
  void do_shine(cocoa::CGContextRef context);
  cocoa::CGColorSpaceRef get_RGB_color_space() { return device_RGB_color_space(); }

 protected:
  cocoa::NSRect _body_rect;        ///< the bounds
  cocoa::NSRect _body_panel_rect;  ///< between the caps
  cocoa::NSRect _control_rect;     ///< the same less 5 points above and below
  cocoa::NSRect _left_rect;        ///< the end caps
  cocoa::NSRect _right_rect;
  cocoa::NSRect _graph_frame;                     ///< where the curve is plotted, and clipped to
  cocoa::Ref<cocoa::NSObject> _graph_body_image;  ///< a picture behind the curve; this view makes none
  cocoa::Ref<cocoa::NSColor> _curve_color;
  cocoa::Ref<cocoa::NSColor> _fill_color;
  cocoa::Ref<cocoa::NSColor> _text_color;  ///< stored only: this view draws no text
  cocoa::CGFloat _x_min = 0, _x_max = 0;
  cocoa::CGFloat _y_min = 0, _y_max = 0;
  cocoa::CGFloat _x_scale = 0;  ///< points a unit of x
  cocoa::CGFloat _y_scale = 0;
  cocoa::CGFloat _m = 0;
  cocoa::CGFloat _beta = 1;
  cocoa::Ref<cocoa::NSBezierPath> _curve_path;  ///< null before the first modulation value

 private:
  void add_curve();
};

}  // namespace ondex
