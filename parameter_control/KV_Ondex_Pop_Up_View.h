// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSTextField.h"
#include "appkit/NSView.h"
#include "foundation/weak_outlets.h"
#include "quartz/CGContext.h"

namespace ondex {

/// The panel in which the user types a number: dark translucent glass with one entry field.
///
/// All readouts of an editor share one, which the interface file makes; it lives outside any window while it
/// is closed. They own it, so it holds its callback host, the readout that opened it last, without owning it:
/// each would otherwise keep the other.
class KV_Ondex_Pop_Up_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  explicit KV_Ondex_Pop_Up_View(cocoa::NSRect frame) : NSView(frame) {}
  /// Names the entry field's outlet in the log where it is not connected.
  void awakeFromNib() override;

  /// Who is told, with the panel as the only object, when the user has finished an entry. Replaces both;
  /// ignored unless both are non-null.
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// The entry field's number, in single precision.
  double current_value() const;
  void set_current_value(double value);
  /// Told to the field's formatter, if it has one.
  void set_format_minimum_maximum(float minimum, float maximum);
  /// The entry field's action.
  void done_editing(cocoa::NSObject* sender);

  /// The entry field gets the keys when the panel's window does.
  void viewDidMoveToWindow() override;
  void drawRect(cocoa::NSRect dirty) override;
  /// Adds to the current path; corners are quarters of an ellipse of that size. A plain rectangle when either
  /// is 0.
  static void add_rounded_rect_to_path_rect_oval_width_oval_height(cocoa::CGContextRef context,
                                                                   cocoa::CGRect rect, float oval_width,
                                                                   float oval_height);

  cocoa::WeakPointer<cocoa::NSTextField> _entry_field;  ///< a subview

 protected:
  cocoa::SEL _callback_selector;
  cocoa::WeakRef<cocoa::NSObject> _callback_host;
};

}  // namespace ondex
