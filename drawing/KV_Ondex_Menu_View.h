// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSPopUpButton.h"
#include "appkit/NSView.h"
#include "drawing/Callback.h"
#include "drawing/shading.h"
#include "foundation/ActionSource.h"
#include "foundation/NSDictionary.h"

namespace ondex {

/// A choice in the capsule look: the middle shows the title of the selected item and opens the list, the end
/// caps step to the item before and after, around the ends. After every press it sends its action, whether or
/// not the press changed anything: the host reads the selection itself.
///
/// It has no items of its own but works those of a pop-up button that it is given. Its rectangles are those
/// of the frame it is made with.
class KV_Ondex_Menu_View : public cocoa::NSView, public cocoa::ActionSource {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }
  explicit KV_Ondex_Menu_View(cocoa::NSRect frame);

  /// Retained; null is ignored, and so is a button around the view, as each would keep the other. Shows at
  /// the next redisplay. Interface files connect it as "menu_button".
  void set_menu_button(cocoa::NSPopUpButton* button);
  /// Ignored unless both are non-null.
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// The callback that an interface file connects, whose host is not retained. The one set last is sent.
  void setTarget_action(cocoa::NSObject* target, cocoa::SEL action) override;
  /// The title's colour; null is ignored. Shows at the next redisplay.
  void set_colors_for_line(cocoa::NSColor* color);

  // Without a button there are no items, and nothing is done to them.

  /// -1 when nothing is selected.
  int indexOfSelectedItem() const;
  int numberOfItems() const;
  void select_index(int index);
  /// As the button inserts: an item of the same title goes first. Neither shows before the next redisplay.
  void insert_item_at_index(cocoa::NSString* title, int index);
  void append_item(cocoa::NSString* title);
  void remove_all_items();

  /// The second press of a double click does nothing; a third one counts again. The list in the middle closes
  /// only after this has returned: the action follows then.
  void mouseDown(cocoa::NSEvent* event) override;
  void mouseUp(cocoa::NSEvent* event) override;

  void drawRect(cocoa::NSRect dirty) override;
  void do_body_panel(cocoa::CGContextRef context);
  void do_shine(cocoa::CGContextRef context);
  void do_left_end_cap(cocoa::CGContextRef context);
  void do_right_end_cap(cocoa::CGContextRef context);
  cocoa::CGColorSpaceRef get_RGB_color_space() { return device_RGB_color_space(); }

 protected:
  bool mouse_is_down = false;
  bool mouse_is_down_in_left = false;  ///< the press began there: the cap glows red
  bool mouse_is_down_in_right = false;
  cocoa::Ref<cocoa::NSPopUpButton> menu_button;
  cocoa::NSRect _body_rect;    ///< the whole capsule
  cocoa::NSRect control_rect;  ///< between the caps: the title
  cocoa::NSRect left_rect;     ///< the caps
  cocoa::NSRect right_rect;
  cocoa::Ref<cocoa::NSColor> line_color;
  Callback _callback;
  cocoa::Ref<cocoa::NSMutableDictionary> title_string_attributes;

 private:
  void send_callback();
  void step_back();
  void step_forward();
  void open_list();
  void finish_press();
  void draw_separators(cocoa::CGContextRef context);

  cocoa::WeakRef<cocoa::NSObject> target_;
  cocoa::SEL target_action_;

  static const cocoa::Outlet outlets_[1];
};

}  // namespace ondex
