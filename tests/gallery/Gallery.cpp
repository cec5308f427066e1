// SPDX-License-Identifier: MIT
#include "Gallery.h"

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "drawing/KV_Ondex_Box.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Label_View.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "gallery_layout.h"
#include "standalone/private/values.h"

namespace ondex::test {

using namespace cocoa;

namespace {

constexpr SEL button_selector("button:");
constexpr SEL menu_selector("menu:");
constexpr SEL tall_menu_selector("tall_menu:");
constexpr SEL pop_up_selector("pop_up:");
constexpr SEL readout_selector("readout:");
constexpr SEL readout_selected_selector("readout_selected:");
constexpr SEL knob_selector("knob:");

Ref<NSColor> rgb(double r, double g, double b, double a = 1) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(r), static_cast<CGFloat>(g),
                                                      static_cast<CGFloat>(b), static_cast<CGFloat>(a));
}

std::string text_of(double value) {
  return ondex::text_of(static_cast<float>(value));
}

}  // namespace

const Action Gallery::actions_[7] = {
    {button_selector, MethodAction<&Gallery::button_action>::perform},
    {menu_selector, MethodAction<&Gallery::menu_action>::perform},
    {tall_menu_selector, MethodAction<&Gallery::tall_menu_action>::perform},
    {pop_up_selector, MethodAction<&Gallery::pop_up_action>::perform},
    {readout_selector, MethodAction<&Gallery::readout_action>::perform},
    {readout_selected_selector, MethodAction<&Gallery::readout_selected_action>::perform},
    {knob_selector, MethodAction<&Gallery::knob_action>::perform},
};

const Class Gallery::class_ = {.name = "Gallery", .superclass = &NSView::class_, .actions = actions_};

Gallery::Gallery(std::function<void(const std::string& line)> tell)
    : NSView({{0, 0}, gallery::size}), tell_(std::move(tell)) {
  addSubview(make<KV_Ondex_Panel_View>(gallery::panel).get());
  addSubview(make<KV_Ondex_Box>(gallery::box).get());
  add_captions();
  add_menus();
  add_readouts();
  add_knob_and_graph();
}

void Gallery::add_captions() {
  const auto label = make<KV_Ondex_Label_View>(gallery::label);
  label->set_description(make<NSString>("Label").get());
  label->set_colors_for_info(rgb(0.9, 0.9, 0.9).get());
  addSubview(label.get());
  const auto button = make<KV_Ondex_Button_View>(gallery::button);
  button->set_description(make<NSString>("Button").get());
  button->set_colors_for_info(rgb(0.95, 0.95, 0.95, 0.67).get());
  addSubview(button.get());
  button->set_callback_onObject(button_selector, this);
}

void Gallery::add_menus() {
  menu_items_ = make<NSPopUpButton>(NSRect{});
  menu_ = make<KV_Ondex_Menu_View>(gallery::menu);
  menu_->set_menu_button(menu_items_.get());
  pop_up_ = make<NSPopUpButton>(gallery::pop_up);
  for (const char* wave : gallery::waves) {
    menu_->append_item(make<NSString>(wave).get());
    pop_up_->addItemWithTitle(wave);
  }
  pop_up_->menu()->insertItem_atIndex(NSMenuItem::separatorItem().get(), 3);
  pop_up_->setTarget_action(this, pop_up_selector);
  tall_menu_items_ = make<NSPopUpButton>(NSRect{});
  tall_menu_ = make<KV_Ondex_Menu_View>(gallery::tall_menu);
  tall_menu_->set_menu_button(tall_menu_items_.get());
  for (int i = 0; i < gallery::tall_menu_items; ++i)
    tall_menu_->append_item(make<NSString>("Item " + std::to_string(i)).get());
  for (NSView* view : {static_cast<NSView*>(menu_.get()), static_cast<NSView*>(pop_up_.get()),
                       static_cast<NSView*>(tall_menu_.get())}) {
    addSubview(view);
  }
  for (KV_Ondex_Menu_View* menu : {menu_.get(), tall_menu_.get()})
    menu->set_colors_for_line(rgb(0.9, 0.9, 0.9).get());
  menu_->set_callback_onObject(menu_selector, this);
  tall_menu_->set_callback_onObject(tall_menu_selector, this);
}

void Gallery::add_readouts() {
  for (size_t i = 0; i < std::size(readouts_); ++i) {
    readouts_[i] = make<KV_Ondex_Parameter_Control_View>(i == 0 ? gallery::readout : gallery::other_readout);
    readouts_[i]->set_colors_for_readout_info(rgb(0.8, 0.65, 0.2).get(), rgb(0.0, 0.15, 0.8).get());
    readouts_[i]->set_description(make<NSString>(i == 0 ? "Readout" : "Other Readout").get());
    readouts_[i]->set_parameter_number(static_cast<int32_t>(i));
    addSubview(readouts_[i].get());
    readouts_[i]->set_callback_onObject(readout_selector, this);
    readouts_[i]->set_selection_callback_onObject(readout_selected_selector, this);
  }
}

void Gallery::add_knob_and_graph() {
  knob_ = make<KV_Ondex_Big_Knob_View>(gallery::knob);
  addSubview(knob_.get());
  knob_->set_callback_onObject(knob_selector, this);
  const auto warm = rgb(0.9, 0.62, 0.5, 0.666);
  graph_ = make<KV_FM_Oscillator_Response_View>(gallery::graph);
  graph_->set_x_minimum_maximum(0.0F, 12.566371F);
  graph_->set_y_minimum_maximum(-1.1F, 1.1F);
  graph_->set_curve_color_fill_color(warm.get(), warm.get());
  graph_->set_modulation_factor(2.0F);
  addSubview(graph_.get());
  show_value(0);
}

void Gallery::drawRect(NSRect) {
  CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
  CGContextSetRGBFillColor(context, CGFloat(0.72), CGFloat(0.5), CGFloat(0.4), 1);
  CGContextFillRect(context, bounds());
}

void Gallery::button_action(NSObject*) {
  tell_("button");
}

void Gallery::menu_action(NSObject*) {
  tell_choice("menu", *menu_items_);
}

void Gallery::tall_menu_action(NSObject*) {
  tell_choice("tall", *tall_menu_items_);
}

void Gallery::pop_up_action(NSObject*) {
  tell_choice("popup", *pop_up_);
}

void Gallery::tell_choice(const std::string& name, const NSPopUpButton& button) {
  std::string line = name + ' ' + std::to_string(button.indexOfSelectedItem());
  if (const NSMenuItem* item = button.selectedItem())
    line += ' ' + item->title();
  tell_(line);
}

void Gallery::readout_action(NSObject* sender) {
  const bool first = sender == readouts_[0].get();
  const double value = readouts_[first ? 0 : 1]->current_value();
  knob_->set_current_value(value);
  show_value(value);
  tell_((first ? "readout " : "other ") + text_of(value));
}

void Gallery::readout_selected_action(NSObject* sender) {
  const size_t selected = sender == readouts_[0].get() ? 0 : 1;
  readouts_[1 - selected]->set_selected(false);
  knob_->set_current_value(readouts_[selected]->current_value());
  tell_("selected " + std::to_string(selected));
}

void Gallery::knob_action(NSObject*) {
  const double value = knob_->current_value();
  for (const auto& readout : readouts_) {
    if (readout->is_selected())
      readout->set_current_value(value);
  }
  show_value(value);
  tell_("knob " + text_of(value));
}

/// The graph shows the last value as its modulation.
void Gallery::show_value(double value) {
  graph_->set_modulation_index(static_cast<float>(3 * value));
}

}  // namespace ondex::test
