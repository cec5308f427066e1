// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "appkit/NSPopUpButton.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "knob/KV_Ondex_Big_Knob_View.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "response_graph/KV_FM_Oscillator_Response_View.h"

namespace ondex::test {

/// One of every control, on the ground that they are made for, and the host of them all: what each sends
/// becomes a line of text.
///
/// "button", "menu 2 Square" (or "menu -1" with nothing selected), "popup 2 Square", "tall 99 Item 99",
/// "selected 0", "readout 0.25", "other 0.25", "knob 0.5".
class Gallery : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }
  explicit Gallery(std::function<void(const std::string& line)> tell);

  bool isOpaque() const override { return true; }
  void drawRect(cocoa::NSRect dirty) override;

 private:
  void add_captions();
  void add_menus();
  void add_readouts();
  void add_knob_and_graph();

  void button_action(cocoa::NSObject* sender);
  void menu_action(cocoa::NSObject* sender);
  void tall_menu_action(cocoa::NSObject* sender);
  void pop_up_action(cocoa::NSObject* sender);
  void readout_action(cocoa::NSObject* sender);
  void readout_selected_action(cocoa::NSObject* sender);
  void knob_action(cocoa::NSObject* sender);
  void tell_choice(const std::string& name, const cocoa::NSPopUpButton& button);
  void show_value(double value);

  std::function<void(const std::string& line)> tell_;
  cocoa::Ref<KV_Ondex_Menu_View> menu_;
  cocoa::Ref<cocoa::NSPopUpButton> menu_items_;
  cocoa::Ref<KV_Ondex_Menu_View> tall_menu_;
  cocoa::Ref<cocoa::NSPopUpButton> tall_menu_items_;
  cocoa::Ref<cocoa::NSPopUpButton> pop_up_;
  cocoa::Ref<KV_Ondex_Parameter_Control_View> readouts_[2];
  cocoa::Ref<KV_Ondex_Big_Knob_View> knob_;
  cocoa::Ref<KV_FM_Oscillator_Response_View> graph_;

  static const cocoa::Action actions_[7];
};

}  // namespace ondex::test
