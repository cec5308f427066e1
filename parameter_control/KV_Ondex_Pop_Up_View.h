#pragma once

#include "appkit/NSView.h"

namespace ondex {

/// What a readout asks of the panel in which the user types a number.
///
/// All readouts of an editor share one. They own it, so it holds its callback host, the readout that opened
/// it last, without owning it: each would otherwise keep the other.
class KV_Ondex_Pop_Up_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// Who is told, with the panel as the only object, when the user has finished an entry. Replaces both;
  /// ignored unless both are non-null.
  virtual void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host) = 0;
  /// The entry field's number, which the field keeps in single precision.
  virtual double current_value() const = 0;
  virtual void set_current_value(double value) = 0;
  /// The bounds that the entry field accepts.
  virtual void set_format_minimum_maximum(float minimum, float maximum) = 0;

 protected:
  explicit KV_Ondex_Pop_Up_View(cocoa::NSRect frame) : NSView(frame) {}
};

}  // namespace ondex
