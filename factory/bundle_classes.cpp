// SPDX-License-Identifier: MIT
#include "factory/bundle_classes.h"

#include "drawing/KV_Ondex_Box.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "factory/KVOndexViewFactory.h"

namespace ondex {

std::span<const cocoa::Class* const> bundle_classes() {
  static const cocoa::Class* const classes[] = {
      &KVOndexView::class_,
      &KVOndexViewFactory::class_,
      &KV_FM_Oscillator_Response_View::class_,
      &KV_Ondex_Big_Knob_View::class_,
      &KV_Ondex_Box::class_,
      &KV_Ondex_Button_View::class_,
      &KV_Ondex_Label_View::class_,
      &KV_Ondex_Menu_View::class_,
      &KV_Ondex_Panel_View::class_,
      &KV_Ondex_Parameter_Control_View::class_,
      &KV_Ondex_Pop_Up_View::class_,
      &KV_Ondex_Preference_Controller::class_,
  };
  return classes;
}

}  // namespace ondex
