// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "appkit/NSPopUpButton.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "gestures.h"
#include "recording_host.h"

namespace ondex::test {

/// A menu view whose protected parts tests may see.
class Menu : public KV_Ondex_Menu_View {
 public:
  using KV_Ondex_Menu_View::_body_rect;
  using KV_Ondex_Menu_View::control_rect;
  using KV_Ondex_Menu_View::KV_Ondex_Menu_View;
  using KV_Ondex_Menu_View::left_rect;
  using KV_Ondex_Menu_View::line_color;
  using KV_Ondex_Menu_View::menu_button;
  using KV_Ondex_Menu_View::mouse_is_down;
  using KV_Ondex_Menu_View::mouse_is_down_in_left;
  using KV_Ondex_Menu_View::mouse_is_down_in_right;
  using KV_Ondex_Menu_View::right_rect;
  using KV_Ondex_Menu_View::title_string_attributes;
};

/// A menu view outside any window with its button of three items.
class MenuView : public testing::Test {
 protected:
  MenuView() {
    menu->set_menu_button(button.get());
    menu->set_callback_onObject(edited_selector, host.get());
    for (const char* title : {"Sine", "Square", "Noise"})
      menu->append_item(text(title).get());
  }
  void click(double x) {
    press(*menu, 1, x, height);
    lift(*menu);
  }

  static cocoa::Ref<cocoa::NSString> text(std::string_view of) { return cocoa::make<cocoa::NSString>(of); }

  static constexpr cocoa::NSRect frame = {{20, 30}, {120, 20}};
  // In the view, which is not in a window, events and views have the same coordinates but for the frame's
  // origin.
  static constexpr double in_left = 25;
  static constexpr double in_middle = 80;
  static constexpr double in_right = 130;
  static constexpr double height = 40;
  cocoa::Ref<Menu> menu = cocoa::make<Menu>(frame);
  cocoa::Ref<cocoa::NSPopUpButton> button =
      cocoa::make<cocoa::NSPopUpButton>(cocoa::NSMakeRect(0, 0, 100, 20));
  cocoa::Ref<RecordingHost> host = cocoa::make<RecordingHost>();
};

}  // namespace ondex::test
