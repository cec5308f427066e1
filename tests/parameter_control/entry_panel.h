#pragma once

#include "parameter_control/KV_Ondex_Pop_Up_View.h"

namespace ondex::test {

/// A numeric-entry panel with a number in place of its field.
class EntryPanel : public KV_Ondex_Pop_Up_View {
 public:
  EntryPanel() : KV_Ondex_Pop_Up_View(cocoa::NSMakeRect(0, 0, 140, 50)) {}
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host) override {
    action = selector;
    opener = cocoa::WeakRef<cocoa::NSObject>(host);
  }
  double current_value() const override { return entry; }
  void set_current_value(double value) override { entry = static_cast<float>(value); }
  void set_format_minimum_maximum(float minimum, float maximum) override {
    lowest = minimum;
    highest = maximum;
  }
  /// As the user who types a number and presses Return.
  void finish(double number) {
    set_current_value(number);
    opener.get()->performSelector_withObject(action, this);
  }

  cocoa::SEL action;
  cocoa::WeakRef<cocoa::NSObject> opener;
  float entry = -1;
  float lowest = -1;
  float highest = -1;
};

}  // namespace ondex::test
