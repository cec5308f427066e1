// SPDX-License-Identifier: MIT
#pragma once

#include "parameter_control/KV_Ondex_Pop_Up_View.h"

namespace ondex::test {

/// The numeric-entry panel with a field as the interface file makes it.
class EntryPanel : public KV_Ondex_Pop_Up_View {
 public:
  EntryPanel() : KV_Ondex_Pop_Up_View(cocoa::NSMakeRect(0, 0, 140, 50)) {
    formatter->setMaximumFractionDigits(9);
    formatter->setLenient(true);
    field->setFormatter(formatter.get());
    field->setTarget_action(this, cocoa::SEL("done_editing:"));
    addSubview(field.get());
    _entry_field = field.get();
  }
  /// As the user who types a number and presses Return.
  void finish(double number) {
    field->setDoubleValue(number);
    done_editing(field.get());
  }
  cocoa::SEL action() const { return _callback_selector; }
  cocoa::NSObject* opener() const { return _callback_host.get(); }

  cocoa::Ref<cocoa::NSNumberFormatter> formatter = cocoa::make<cocoa::NSNumberFormatter>();
  cocoa::Ref<cocoa::NSTextField> field = cocoa::make<cocoa::NSTextField>(cocoa::NSMakeRect(10, 10, 120, 30));
};

}  // namespace ondex::test
