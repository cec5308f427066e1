// SPDX-License-Identifier: MIT
#include <initializer_list>
#include <string>

#include "appkit/NSPopUpButton.h"
#include "appkit/private/menu_list.h"
#include "contact_sheet.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "gestures.h"
#include "knob/KV_Ondex_Big_Knob_View.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "sheet.h"

namespace ondex::test {

using namespace cocoa;

namespace {

constexpr CGFloat sheet_height = 420;
constexpr NSRect menu_frame = {{0, 0}, {120, 14}};
constexpr NSRect pop_up_frame = {{0, 0}, {120, 20}};
constexpr std::initializer_list<const char*> waves = {"Sine", "Triangle", "Square", "Noise"};

Ref<KV_Ondex_Menu_View> menu(std::initializer_list<const char*> titles, int selected) {
  const auto button = make<NSPopUpButton>(NSRect{});
  auto view = make<KV_Ondex_Menu_View>(menu_frame);
  view->set_menu_button(button.get());
  view->set_colors_for_line(rgb(0.9, 0.9, 0.9).get());
  for (const char* title : titles)
    view->append_item(make<NSString>(title).get());
  view->select_index(selected);
  return view;
}

void show_menus(Sheet& sheet) {
  sheet.show(make<KV_Ondex_Menu_View>(menu_frame).get(), "fresh menu");
  sheet.show(menu({}, -1).get(), "empty list");
  sheet.show(menu(waves, -1).get(), "nothing selected");
  sheet.show(menu(waves, 0).get(), "first");
  sheet.show(menu(waves, 3).get(), "last");
  sheet.end_row();
  const auto black = menu(waves, 1);
  black->set_colors_for_line(NSColor::colorWithDeviceWhite_alpha(0, 1).get());
  sheet.show(black.get(), "as it is created: black");
  sheet.show(menu({"A title that is wider than the control"}, 0).get(), "too long a title");
  const auto left = menu(waves, 3);
  press(*left, 1, 5, 7);
  sheet.show(left.get(), "left cap pressed");
  const auto right = menu(waves, 1);
  press(*right, 1, 115, 7);
  sheet.show(right.get(), "right cap pressed");
  const auto tall = make<KV_Ondex_Menu_View>(NSMakeRect(0, 0, 90, 36));
  sheet.show(tall.get(), "36 high");
  sheet.end_row();
}

/// The list of a button as it opens, as wide as a menu.
Ref<MenuList> list_of(const NSPopUpButton& button) {
  auto list = make<MenuList>(*button.menu());
  list->setFrameSize({120, list->naturalSize().height});
  return list;
}

Ref<NSPopUpButton> waves_button() {
  auto button = make<NSPopUpButton>(pop_up_frame);
  for (const char* title : waves)
    button->addItemWithTitle(title);
  button->selectItemAtIndex(1);
  return button;
}

void show_lists(Sheet& sheet) {
  const auto button = waves_button();
  sheet.show(button.get(), "pop-up button");
  sheet.show(list_of(*button).get(), "list, second selected");
  const auto opened = list_of(*button);
  opened->setHighlighted(1);
  sheet.show(opened.get(), "as it opens");
  const auto lit = list_of(*button);
  lit->setHighlighted(3);
  sheet.show(lit.get(), "another one lit");
  const auto separated = waves_button();
  separated->menu()->insertItem_atIndex(NSMenuItem::separatorItem().get(), 2);
  separated->itemAtIndex(3)->setEnabled(false);
  sheet.show(list_of(*separated).get(), "separated, one disabled");
  const auto many = make<NSPopUpButton>(pop_up_frame);
  for (int i = 0; i < 20; ++i)
    many->addItemWithTitle("Item " + std::to_string(i));
  const auto cut = list_of(*many);
  cut->setFrameSize({120, 100});
  cut->scrollToShow(9);
  cut->setHighlighted(9);
  sheet.show(cut.get(), "taller than the screen");
  sheet.end_row();
}

void show_pressed(Sheet& sheet) {
  const auto button = make<KV_Ondex_Button_View>(NSMakeRect(0, 0, 180, 20));
  button->set_description(make<NSString>("KV Ondex").get());
  button->set_colors_for_info(rgb(0.95, 0.95, 0.95, 0.67).get());
  press(*button, 1, 90, 10);
  sheet.show(button.get(), "title button, pressed");
  const auto readout = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(0, 0, 139, 26));
  readout->set_colors_for_readout_info(rgb(0.8, 0.65, 0.2).get(), rgb(0.0, 0.15, 0.8).get());
  readout->set_description(make<NSString>("Right Tremolo Mod Factor").get());
  press(*readout, 1, 70, 13);
  sheet.show(readout.get(), "readout, pressed");
  const auto knob = make<KV_Ondex_Big_Knob_View>(NSMakeRect(0, 0, 120, 120));
  press(*knob, 1, 100, 80);
  sheet.show(knob.get(), "knob, pressed");
  sheet.show(make<KV_Ondex_Panel_View>(NSMakeRect(0, 0, 220, 120)).get(), "panel");
  sheet.show(make<KV_Ondex_Panel_View>(NSMakeRect(0, 0, 30, 120)).get(), "30 wide");
}

}  // namespace

Ref<NSView> choices_sheet() {
  const auto sheet = make<Sheet>(sheet_height);
  show_menus(*sheet);
  show_lists(*sheet);
  show_pressed(*sheet);
  return sheet;
}

}  // namespace ondex::test
