// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "appkit/NSView.h"
#include "drawing/Callback.h"
#include "drawing/shading.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"
#include "quartz/CGOwned.h"

namespace ondex {

/// The large rotary knob. Its pointer turns clockwise by 270°, from the lower left over the top to the lower
/// right, as the value rises; it jumps to the angle at which the mouse is pressed.
///
/// Values given and returned are plain ones; the knob keeps them mapped by its scale type, in which the
/// pointer's angle is linear. Setters never send the callback, gestures do. Everything is called on the main
/// thread. The layout is computed from the bounds at creation; the frame should be about square.
class KV_Ondex_Big_Knob_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// Range 0 to 1, linear, value and default 0.
  explicit KV_Ondex_Big_Knob_View(cocoa::NSRect frame);
  void awakeFromNib() override;

  /// Sent with the knob as the only object after every press, drag and turn of the wheel, changed or not.
  /// Ignored unless both are non-null.
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// Points the knob at another parameter. A maximum below the minimum collapses the range onto the maximum.
  /// The scale type is one of scale_type/scale_type.h. The value means nothing, and the pointer stays where
  /// it is, until set_current_value, which must follow.
  void set_values_minimum_maximum_default_value_scale_type(double minimum, double maximum,
                                                           double default_value, int32_t scale_type);
  void set_current_value(double value);
  double current_value() const;
  int32_t scale_type() const { return _scale_type; }
  /// Recomputes the pointer's place from the value.
  void update_knob_location();

  void mouseDown(cocoa::NSEvent* event) override;
  void mouseDragged(cocoa::NSEvent* event) override;
  void mouseUp(cocoa::NSEvent* event) override;
  void scrollWheel(cocoa::NSEvent* event) override;
  bool mouseDownCanMoveWindow() const override { return false; }

  void drawRect(cocoa::NSRect dirty) override;
  void do_knob(cocoa::CGContextRef context);
  void do_shine(cocoa::CGContextRef context);
  /// A panel over the bounds, coloured by the pressed state. The knob's own look does without it.
  void do_body_panel(cocoa::CGContextRef context);
  /// Device RGB; made on first use and kept for the life of the process.
  static cocoa::CGColorSpaceRef get_RGB_color_space();

 protected:
  bool _mouse_is_down = false;  ///< a press that began on the knob is held
  int32_t _scale_type = 0;
  cocoa::NSRect _control_rect;                   ///< the bounds
  cocoa::NSRect _knob_rect;                      ///< the bounds less 5 points on every side
  cocoa::CGOwned<cocoa::CGPath> _knob_hit_path;  ///< the ellipse in _control_rect
  Callback _callback;
  double _value = 0.0;  ///< this and the next three in mapped space
  double _minimum_value = 0.0;
  double _maximum_value = 1.0;
  double _default_value = 0.0;
  cocoa::NSPoint _origin;        ///< centre of _knob_rect
  double _radius = 0.0;          ///< of the pointer's circle
  double _theta_min = 0.0;       ///< pointer's angle at the minimum, in radians
  double _theta_max = 0.0;       ///< and at the maximum
  double _scale = 0.0;           ///< radians a unit of mapped value; negative, as the pointer turns clockwise
  double _rotation_scale = 0.0;  ///< mapped value a unit of the wheel
  double _x = 0.0;               ///< pointer's centre
  double _y = 0.0;

 private:
  cocoa::NSPoint point_of(const cocoa::NSEvent& event) const;
  void set_value_from_point(cocoa::NSPoint point);
  void update_scales();
  void show_value();
  /// Asks for a redraw where the pointer was when this was last asked, and where it is: whatever the value
  /// and the mouse do, nothing else of the knob changes.
  void redraw_pointer();

  // Made when they are first drawn with; they keep their colours.
  Shading _rings;
  Shading _face;
  Shading _glint;
  cocoa::NSPoint _marked_pointer;  ///< where the pointer was when a redraw was last asked for
};

}  // namespace ondex
