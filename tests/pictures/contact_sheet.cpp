// SPDX-License-Identifier: MIT
#include "contact_sheet.h"

#include <string>

#include "drawing/KV_Ondex_Box.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Label_View.h"
#include "knob/KV_Ondex_Big_Knob_View.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "response_graph/KV_FM_Oscillator_Response_View.h"
#include "sheet.h"

namespace ondex::test {

using namespace cocoa;

namespace {

constexpr CGFloat contact_sheet_height = 640;

void show_captions(Sheet& sheet) {
  const NSRect frame = NSMakeRect(0, 0, 96, 14);
  sheet.show(make<KV_Ondex_Label_View>(frame).get(), "fresh label");
  const auto label = make<KV_Ondex_Label_View>(frame);
  label->set_description(make<NSString>("Tremolo").get());
  label->set_colors_for_info(rgb(0.9, 0.9, 0.9).get());
  sheet.show(label.get(), "label");
  const auto narrow = make<KV_Ondex_Label_View>(NSMakeRect(0, 0, 10, 40));
  sheet.show(narrow.get(), "10 wide");
  const auto button = make<KV_Ondex_Button_View>(NSMakeRect(0, 0, 180, 20));
  button->set_description(make<NSString>("KV Ondex").get());
  button->set_colors_for_info(rgb(0.95, 0.95, 0.95, 0.67).get());
  sheet.show(button.get(), "title button");
}

void show_readouts(Sheet& sheet) {
  const auto readout = [&sheet](std::string_view caption, double value, bool selected, bool configured) {
    const auto view = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(0, 0, 139, 26));
    if (configured) {
      view->set_colors_for_readout_info(rgb(0.8, 0.65, 0.2).get(), rgb(0.0, 0.15, 0.8).get());
      view->set_values_minimum_maximum_default_value_scale_type(-10, 20000, 0, 0);
      view->set_description(make<NSString>("Right Tremolo Mod Factor").get());
    }
    view->set_current_value(value);
    view->set_selected(selected);
    sheet.show(view.get(), caption);
  };
  readout("fresh readout", 0, false, false);
  readout("fresh, selected", 1, true, false);
  readout("readout", 1234.5, false, true);
  readout("selected", -0.25, true, true);
}

void show_knobs(Sheet& sheet) {
  for (const double value : {0.0, 0.25, 0.5, 1.0}) {
    const auto knob = make<KV_Ondex_Big_Knob_View>(NSMakeRect(0, 0, 120, 120));
    knob->set_current_value(value);
    sheet.show(knob.get(), "knob at " + std::to_string(static_cast<int>(value * 100)) + " %");
  }
  const auto box = make<KV_Ondex_Box>(NSMakeRect(0, 0, 140, 120));
  box->setTitle("never shown");
  sheet.show(box.get(), "box");
}

void show_graphs(Sheet& sheet) {
  const auto graph = [&sheet](std::string_view caption, auto configure) {
    const auto view = make<KV_FM_Oscillator_Response_View>(NSMakeRect(0, 0, 200, 120));
    view->set_x_minimum_maximum(0.0F, 12.566371F);
    view->set_y_minimum_maximum(-1.1F, 1.1F);
    configure(*view);
    sheet.show(view.get(), caption);
  };
  const auto warm = rgb(0.9, 0.62, 0.5, 0.666);
  graph("fresh graph", [](auto&) {});
  graph("sine", [&](auto& view) {
    view.set_curve_color_fill_color(warm.get(), warm.get());
    view.set_modulation_index(0.0F);
  });
  graph("factor 2, index 1.5", [&](auto& view) {
    view.set_curve_color_fill_color(warm.get(), warm.get());
    view.set_modulation_factor(2.0F);
    view.set_modulation_index(1.5F);
  });
  graph("without a fill colour", [&](auto& view) {
    view.set_curve_color_fill_color(warm.get(), nullptr);
    view.set_modulation_index(1.0F);
  });
}

}  // namespace

Ref<NSView> contact_sheet() {
  const auto sheet = make<Sheet>(contact_sheet_height);
  show_captions(*sheet);
  show_readouts(*sheet);
  show_knobs(*sheet);
  show_graphs(*sheet);
  return sheet;
}

}  // namespace ondex::test
