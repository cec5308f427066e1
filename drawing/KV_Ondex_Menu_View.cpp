// SPDX-License-Identifier: MIT
#include "drawing/KV_Ondex_Menu_View.h"

#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "drawing/capsule.h"
#include "drawing/color_rules.h"
#include "drawing/text_attributes.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat menu_cap_width = 15;
constexpr CGFloat menu_title_size = 9;

// Of an end cap: colour A at the inner edge, colour B towards the tip.
constexpr CGFloat idle_inner[] = {CGFloat(0.0125), CGFloat(0.0125), CGFloat(0.0425)};
constexpr CGFloat idle_tip[] = {CGFloat(0.25), CGFloat(0.25), CGFloat(0.93)};
constexpr CGFloat pressed_inner[] = {CGFloat(0.0425), CGFloat(0.0125), CGFloat(0.0125)};
constexpr CGFloat pressed_tip[] = {CGFloat(0.93), CGFloat(0.25), CGFloat(0.25)};

/// The span of colours from a circle around the middle of the cap's inner edge to a point near its tip.
void fill_radial_cap(CGContextRef context, NSRect cap, NSRect ellipse, bool pressed, CGFloat inner_edge,
                     CGFloat tip) {
  const Function span = pressed ? create_radial_shader_function(pressed_inner, pressed_tip)
                                : create_radial_shader_function(idle_inner, idle_tip);
  const CGFloat middle = NSMinY(cap) + NSHeight(cap) / 2;
  // The span ends at a circle, which a shading does not smooth. In a tall cap that lies within the ellipse.
  if (NSHeight(ellipse) > NSWidth(ellipse))
    ellipse = NSInsetRect(ellipse, 0, (NSHeight(ellipse) - NSWidth(ellipse)) / 2);
  fill_rect_and_ellipse(
      context, cap, ellipse,
      create_radial_shading(span, {{inner_edge, middle}, NSWidth(cap)}, {{tip, middle}, 0}));
}

bool set_menu_button_outlet(NSObject& self, NSObject* value) {
  auto* button = dynamic_cast<NSPopUpButton*>(value);
  if (value && !button)
    return false;
  static_cast<KV_Ondex_Menu_View&>(self).set_menu_button(button);
  return true;
}

}  // namespace

const Outlet KV_Ondex_Menu_View::outlets_[1] = {{"menu_button", set_menu_button_outlet}};

const Class KV_Ondex_Menu_View::class_ = {
    .name = "KV_Ondex_Menu_View",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KV_Ondex_Menu_View>(frame)); },
    .outlets = outlets_};

KV_Ondex_Menu_View::KV_Ondex_Menu_View(NSRect frame)
    : NSView(frame),
      _body_rect(bounds()),
      control_rect(middle_rect(bounds(), menu_cap_width)),
      left_rect(left_cap_rect(bounds(), menu_cap_width)),
      right_rect(right_cap_rect(bounds(), menu_cap_width)),
      line_color(NSColor::colorWithDeviceWhite_alpha(0, 1)),
      title_string_attributes(
          centred_text_attributes(NSFont::systemFontOfSize(menu_title_size).get(), line_color.get())) {}

void KV_Ondex_Menu_View::set_menu_button(NSPopUpButton* button) {
  if (button && !isDescendantOf(button))
    menu_button = button;
}

void KV_Ondex_Menu_View::set_callback_onObject(SEL selector, NSObject* host) {
  if (!selector || !host)
    return;
  _callback.set(selector, host, *this);
  target_ = WeakRef<NSObject>();
}

void KV_Ondex_Menu_View::setTarget_action(NSObject* target, SEL action) {
  target_ = WeakRef<NSObject>(target);
  target_action_ = action;
}

void KV_Ondex_Menu_View::send_callback() {
  if (const Ref<NSObject> target = target_.get())
    return target->performSelector_withObject(target_action_, this);
  _callback.send(this);
}

void KV_Ondex_Menu_View::set_colors_for_line(NSColor* color) {
  if (!color)
    return;
  line_color = color;
  title_string_attributes->setObject_forKey(color, NSForegroundColorAttributeName);
}

int KV_Ondex_Menu_View::indexOfSelectedItem() const {
  return menu_button ? menu_button->indexOfSelectedItem() : -1;
}

int KV_Ondex_Menu_View::numberOfItems() const {
  return menu_button ? menu_button->numberOfItems() : 0;
}

void KV_Ondex_Menu_View::select_index(int index) {
  if (menu_button)
    menu_button->selectItemAtIndex(index);
  setNeedsDisplay(true);
}

void KV_Ondex_Menu_View::insert_item_at_index(NSString* title, int index) {
  if (menu_button && title)
    menu_button->insertItemWithTitle_atIndex(title->view(), index);
}

void KV_Ondex_Menu_View::append_item(NSString* title) {
  if (menu_button && title)
    menu_button->addItemWithTitle(title->view());
}

void KV_Ondex_Menu_View::remove_all_items() {
  if (menu_button)
    menu_button->removeAllItems();
}

void KV_Ondex_Menu_View::mouseDown(NSEvent* event) {
  if (event->clickCount() == 2) {
    setNeedsDisplay(true);
    return;
  }
  mouse_is_down = true;
  const NSPoint where = convertPoint_fromView(event->locationInWindow(), nullptr);
  if (NSPointInRect(where, left_rect)) {
    mouse_is_down_in_left = true;
    step_back();
    finish_press();
  } else if (NSPointInRect(where, right_rect)) {
    mouse_is_down_in_right = true;
    step_forward();
    finish_press();
  } else {
    open_list();
  }
}

void KV_Ondex_Menu_View::step_back() {
  if (!menu_button)
    return;
  const int before = menu_button->indexOfSelectedItem() - 1;
  menu_button->selectItemAtIndex(before < 0 ? menu_button->numberOfItems() - 1 : before);
}

void KV_Ondex_Menu_View::step_forward() {
  if (!menu_button)
    return;
  const int after = menu_button->indexOfSelectedItem() + 1;
  menu_button->selectItemAtIndex(after < menu_button->numberOfItems() ? after : 0);
}

void KV_Ondex_Menu_View::open_list() {
  if (!menu_button)
    return finish_press();
  // The view may go, with its editor, while the list is open.
  const WeakRef<KV_Ondex_Menu_View> self(this);
  menu_button->cell()->performClickWithFrame_inView(frame(), superview(), [self] {
    if (const Ref<KV_Ondex_Menu_View> view = self.get())
      view->finish_press();
  });
}

void KV_Ondex_Menu_View::finish_press() {
  // The action may let go of the view.
  const Ref<KV_Ondex_Menu_View> self(this);
  if (menu_button)
    send_callback();
  setNeedsDisplay(true);
}

void KV_Ondex_Menu_View::mouseUp(NSEvent*) {
  mouse_is_down = false;
  mouse_is_down_in_right = false;
  mouse_is_down_in_left = false;
  setNeedsDisplay(true);
}

void KV_Ondex_Menu_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  do_body_panel(context);
  do_left_end_cap(context);
  do_right_end_cap(context);
  draw_separators(context);
  if (menu_button) {
    drawInRect_withAttributes(menu_button->titleOfSelectedItem().get(), control_rect,
                              title_string_attributes.get());
  }
  // Last, so that the glass lies over the letters.
  do_shine(context);
}

/// A dark and a light line where each cap meets the middle.
void KV_Ondex_Menu_View::draw_separators(CGContextRef context) {
  constexpr CGFloat width = 0.5;
  constexpr CGFloat alpha = 0.25;
  const auto draw_at = [&](CGFloat distance, CGFloat grey) {
    CGContextSetLineWidth(context, width);
    CGContextSetRGBStrokeColor(context, grey, grey, grey, alpha);
    CGContextBeginPath(context);
    for (const CGFloat x : {NSMaxX(left_rect) + distance, NSMinX(right_rect) - distance}) {
      CGContextMoveToPoint(context, x, NSMinY(left_rect));
      CGContextAddLineToPoint(context, x, NSMaxY(left_rect));
    }
    CGContextStrokePath(context);
  };
  draw_at(0.5, 0);
  draw_at(1, 1);
}

void KV_Ondex_Menu_View::do_body_panel(CGContextRef context) {
  fill_rect_upwards(context, control_rect, capsule_rules::bg_panel_evaluate, nullptr);
}

void KV_Ondex_Menu_View::do_shine(CGContextRef context) {
  fill_rect_upwards(context, _body_rect, capsule_rules::shine_overlay_evaluate, nullptr);
}

void KV_Ondex_Menu_View::do_left_end_cap(CGContextRef context) {
  const NSRect ellipse =
      NSMakeRect(NSMinX(left_rect), NSMinY(left_rect), 2 * NSWidth(left_rect), NSHeight(left_rect));
  constexpr auto near_tip = CGFloat(0.05);
  fill_radial_cap(context, left_rect, ellipse, mouse_is_down_in_left, NSMaxX(left_rect),
                  NSMinX(left_rect) + near_tip * NSWidth(left_rect));
}

void KV_Ondex_Menu_View::do_right_end_cap(CGContextRef context) {
  const NSRect ellipse = NSMakeRect(NSMinX(right_rect) - NSWidth(right_rect), NSMinY(right_rect),
                                    2 * NSWidth(right_rect), NSHeight(right_rect));
  constexpr auto near_tip = CGFloat(0.95);
  fill_radial_cap(context, right_rect, ellipse, mouse_is_down_in_right, NSMinX(right_rect),
                  NSMinX(right_rect) + near_tip * NSWidth(right_rect));
}

}  // namespace ondex
