// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "drawing/Callback.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"
#include "parameter_control/KV_Ondex_Pop_Up_View.h"
#include "parameter_control/KV_Ondex_Pop_Up_Window.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"

namespace ondex {

/// The capsule-shaped numeric readout of one parameter: its name above, its value below.
///
/// A click selects it; a vertical drag or the wheel moves the value through the range, linearly in the space
/// of the scale type; a double click opens the numeric-entry panel. Values given and returned are plain ones.
/// Setters never send callbacks, gestures do. Everything is called on the main thread.
///
/// The layout is computed from the bounds at creation and does not follow later changes of the frame.
class KV_Ondex_Parameter_Control_View : public cocoa::NSView, public cocoa::NSWindowDelegate {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// Range 0 to 1, linear, value and default 0, described as "---", not selected.
  explicit KV_Ondex_Parameter_Control_View(cocoa::NSRect frame);
  ~KV_Ondex_Parameter_Control_View() override;
  void awakeFromNib() override;

  /// A maximum below the minimum collapses the range onto the maximum. The default value and the current one
  /// are brought inside. The scale type is one of scale_type/scale_type.h and stored as it is.
  void set_values_minimum_maximum_default_value_scale_type(double minimum, double maximum,
                                                           double default_value, int32_t scale_type);
  /// Stores the value brought inside the range; not-a-number becomes the minimum.
  void set_current_value(double value);
  double current_value() const { return _value; }
  double minimum_value() const { return _minimum_value; }
  double maximum_value() const { return _maximum_value; }
  double default_value() const { return _default_value; }
  int32_t scale_type() const { return _scale_type; }

  /// The Audio Unit parameter that the readout stands for; only kept here.
  void set_parameter_number(int32_t parameter_number);
  int32_t parameter_number() const { return static_cast<int32_t>(_parameter_number); }
  /// The parameter's name, retained; null is ignored.
  void set_description(cocoa::NSString* description);
  cocoa::Ref<cocoa::NSString> description() const override { return _description; }
  /// Colours of the number and of the name, retained; a null one leaves its colour as it is.
  void set_colors_for_readout_info(cocoa::NSColor* readout, cocoa::NSColor* info);
  void set_selected(bool selected);
  bool is_selected() const { return _is_selected; }

  /// Sent after every drag, every turn of the wheel and every typed entry, changed or not. Ignored unless
  /// both are non-null; so is the selection callback.
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// Sent when a click selects the readout.
  void set_selection_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// The numeric-entry panel, retained; null is ignored, and so is one around the readout, as each would keep
  /// the other. Without one a double click opens nothing.
  void set_pop_up_view(KV_Ondex_Pop_Up_View* pop_up_view);

  void mouseDown(cocoa::NSEvent* event) override;
  void mouseDragged(cocoa::NSEvent* event) override;
  void mouseUp(cocoa::NSEvent* event) override;
  void scrollWheel(cocoa::NSEvent* event) override;
  bool mouseDownCanMoveWindow() const override { return false; }

  /// Action of the numeric-entry panel: takes its number and closes its window.
  void pop_up_done_editing(cocoa::NSObject* sender);
  /// The numeric-entry window lost the keyboard: closes it without taking its number.
  void windowDidResignKey(cocoa::NSWindow* window) override;
  /// A readout that leaves its window cannot be typed into any more: closes the numeric-entry window without
  /// taking its number.
  void viewDidMoveToWindow() override;

  void drawRect(cocoa::NSRect dirty) override;
  void do_body_panel(cocoa::CGContextRef context);
  void do_left_end_cap(cocoa::CGContextRef context);
  void do_right_end_cap(cocoa::CGContextRef context);
  void do_shine(cocoa::CGContextRef context);
  /// Device RGB; made on first use and kept for the life of the process.
  static cocoa::CGColorSpaceRef get_RGB_color_space();

 protected:
  bool _mouse_is_down = false;
  bool _is_selected = false;
  cocoa::NSRect _body_rect;     ///< the whole bounds
  cocoa::NSRect _control_rect;  ///< between the end caps
  cocoa::NSRect _left_rect;
  cocoa::NSRect _right_rect;
  cocoa::NSRect _readout_rect;  ///< lower half of _control_rect: the number
  cocoa::NSRect _info_rect;     ///< upper half of _control_rect: the description
  cocoa::Ref<cocoa::NSColor> _readout_color;
  cocoa::Ref<cocoa::NSColor> _info_color;
  Callback _callback;
  Callback _selection_callback;
  cocoa::Ref<cocoa::NSMutableDictionary> _readout_string_attributes;
  cocoa::Ref<cocoa::NSMutableDictionary> _info_string_attributes;
  double _value = 0.0;
  double _default_value = 0.0;
  double _minimum_value = 0.0;
  double _maximum_value = 1.0;
  int32_t _scale_type = 0;
  cocoa::Ref<cocoa::NSString> _description;
  uint32_t _parameter_number = 0;
  cocoa::Ref<KV_Ondex_Pop_Up_View> _pop_up_view;
  cocoa::Ref<KV_Ondex_Pop_Up_Window> _pop_up_window;  ///< while the panel is open

 private:
  void open_pop_up();
  /// Ends what the readout has to do with an open numeric-entry window, which goes with the reference
  /// returned.
  cocoa::Ref<KV_Ondex_Pop_Up_Window> let_go_of_pop_up();
  /// Moves the value by `gain` × `movement` of the span in mapped space and sends the value callback.
  void step_value(double gain, double movement);
};

}  // namespace ondex
