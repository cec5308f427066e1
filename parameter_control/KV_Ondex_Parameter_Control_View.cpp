// SPDX-License-Identifier: MIT
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"

#include <utility>

#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "drawing/capsule.h"
#include "drawing/text_attributes.h"
#include "quartz/CGWindowLevel.h"
#include "scale_type/scale_type.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat text_size = 9.0;

constexpr double drag_gain = 0.005;   // of the span, a point
constexpr double wheel_gain = 0.002;  // of the span, a unit
constexpr double cross_axis_weight = 0.1;
constexpr int pop_up_click_count = 2;

constexpr SEL done_editing_action("pop_up_done_editing:");
constexpr Action readout_actions[] = {
    {done_editing_action, MethodAction<&KV_Ondex_Parameter_Control_View::pop_up_done_editing>::perform},
};

}  // namespace

const Class KV_Ondex_Parameter_Control_View::class_ = {
    .name = "KV_Ondex_Parameter_Control_View",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) -> Ref<NSObject> {
      return make<KV_Ondex_Parameter_Control_View>(frame);
    },
    .actions = readout_actions,
};

// Creation and configuration

KV_Ondex_Parameter_Control_View::KV_Ondex_Parameter_Control_View(NSRect frame)
    : NSView(frame),
      _readout_color(NSColor::yellowColor()),
      _info_color(NSColor::blueColor()),
      _description(make<NSString>("---")) {
  _body_rect = bounds();
  _left_rect = left_cap_rect(_body_rect);
  _right_rect = right_cap_rect(_body_rect);
  _control_rect = middle_rect(_body_rect);
  const CGFloat half = _control_rect.size.height * CGFloat(0.5);
  _readout_rect = NSMakeRect(_control_rect.origin.x, _control_rect.origin.y, _control_rect.size.width, half);
  _info_rect =
      NSMakeRect(_control_rect.origin.x, _control_rect.origin.y + half, _control_rect.size.width, half);

  const Ref<NSFont> font = NSFont::systemFontOfSize(text_size);
  _readout_string_attributes = centred_text_attributes(font.get(), _readout_color.get());
  _info_string_attributes = centred_text_attributes(font.get(), _info_color.get());
  setNeedsDisplay(true);
}

KV_Ondex_Parameter_Control_View::~KV_Ondex_Parameter_Control_View() {
  let_go_of_pop_up();
}

void KV_Ondex_Parameter_Control_View::awakeFromNib() {
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_values_minimum_maximum_default_value_scale_type(
    double minimum, double maximum, double default_value, int32_t scale_type) {
  _default_value = default_value;
  _minimum_value = minimum;
  if (!(maximum >= _minimum_value))
    _minimum_value = maximum;
  _maximum_value = maximum;
  if (_minimum_value > _maximum_value)
    _maximum_value = _minimum_value;
  _default_value = clamped(_default_value, _minimum_value, _maximum_value);
  _value = clamped(_value, _minimum_value, _maximum_value);
  _scale_type = scale_type;
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_current_value(double value) {
  _value = clamped(value, _minimum_value, _maximum_value);
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_parameter_number(int32_t parameter_number) {
  _parameter_number = static_cast<uint32_t>(parameter_number);
}

void KV_Ondex_Parameter_Control_View::set_description(NSString* description) {
  if (!description)
    return;
  _description = description;
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_colors_for_readout_info(NSColor* readout, NSColor* info) {
  if (readout) {
    _readout_color = readout;
    _readout_string_attributes->setObject_forKey(readout, NSForegroundColorAttributeName);
  }
  if (info) {
    _info_color = info;
    _info_string_attributes->setObject_forKey(info, NSForegroundColorAttributeName);
  }
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_selected(bool selected) {
  _is_selected = selected;
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::set_callback_onObject(SEL selector, NSObject* host) {
  _callback.set(selector, host, *this);
}

void KV_Ondex_Parameter_Control_View::set_selection_callback_onObject(SEL selector, NSObject* host) {
  _selection_callback.set(selector, host, *this);
}

void KV_Ondex_Parameter_Control_View::set_pop_up_view(KV_Ondex_Pop_Up_View* pop_up_view) {
  if (pop_up_view && !isDescendantOf(pop_up_view))
    _pop_up_view = pop_up_view;
}

// Gestures

void KV_Ondex_Parameter_Control_View::mouseDown(NSEvent* event) {
  if (event->clickCount() == pop_up_click_count) {
    if (_pop_up_view)
      open_pop_up();
    return;
  }
  if (_is_selected)
    return;
  _is_selected = true;
  _selection_callback.send(this);
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::mouseDragged(NSEvent* event) {
  step_value(drag_gain, static_cast<double>(event->deltaX()) * cross_axis_weight - event->deltaY());
}

void KV_Ondex_Parameter_Control_View::scrollWheel(NSEvent* event) {
  step_value(wheel_gain, static_cast<double>(event->deltaX()) * -cross_axis_weight + event->deltaY());
}

void KV_Ondex_Parameter_Control_View::mouseUp(NSEvent*) {
  _mouse_is_down = false;
  setNeedsDisplay(true);
}

void KV_Ondex_Parameter_Control_View::step_value(double gain, double movement) {
  const double span = mapped_value(_scale_type, _maximum_value) - mapped_value(_scale_type, _minimum_value);
  const double moved = mapped_value(_scale_type, _value) + span * gain * movement;
  set_current_value(plain_value(_scale_type, moved));
  _callback.send(this);
}

// Numeric entry

/// Shows the panel with its lower left corner on the readout's, in a new window.
void KV_Ondex_Parameter_Control_View::open_pop_up() {
  NSWindow* const editor_window = window();
  if (!editor_window)
    return;
  const NSPoint origin = convertPoint_toView(bounds().origin, nullptr);
  const NSPoint screen = editor_window->frame().origin;
  const NSRect content_rect = {{origin.x + screen.x, origin.y + screen.y}, _pop_up_view->bounds().size};

  // What is on no record could never be closed, and the one panel of all readouts is shown once.
  let_go_of_pop_up();
  if (auto* shown_in = dynamic_cast<KV_Ondex_Pop_Up_Window*>(_pop_up_view->window()))
    shown_in->cancel();
  _pop_up_view->set_current_value(current_value());
  _pop_up_view->set_format_minimum_maximum(static_cast<float>(minimum_value()),
                                           static_cast<float>(maximum_value()));
  _pop_up_view->set_callback_onObject(done_editing_action, this);

  _pop_up_window = make<KV_Ondex_Pop_Up_Window>(content_rect, NSBorderlessWindowMask);
  const Ref<KV_Ondex_Pop_Up_Window> opened = _pop_up_window;
  opened->setOpaque(false);
  opened->setHasShadow(true);
  opened->setLevel(CGWindowLevelForKey(kCGFloatingWindowLevelKey));
  opened->setContentView(_pop_up_view.get());
  opened->setDelegate(this);
  editor_window->addChildWindow_ordered(opened.get(), NSWindowAbove);
  opened->makeKeyAndOrderFront(this);
}

void KV_Ondex_Parameter_Control_View::pop_up_done_editing(NSObject*) {
  if (!_pop_up_view)
    return;
  set_current_value(_pop_up_view->current_value());
  _callback.send(this);
  let_go_of_pop_up();
}

void KV_Ondex_Parameter_Control_View::windowDidResignKey(NSWindow*) {
  // Still in use by the event that took the keys from it: it goes when that has been dealt with.
  let_go_of_pop_up().autorelease();
}

void KV_Ondex_Parameter_Control_View::viewDidMoveToWindow() {
  let_go_of_pop_up();
}

Ref<KV_Ondex_Pop_Up_Window> KV_Ondex_Parameter_Control_View::let_go_of_pop_up() {
  // Out of the field first: the window may tell its delegate that it lost the keys while it goes.
  Ref<KV_Ondex_Pop_Up_Window> closed = std::exchange(_pop_up_window, nullptr);
  if (!closed)
    return closed;
  // It may outlive the readout, and the readout may be in another window by now.
  closed->setDelegate(nullptr);
  if (NSWindow* const parent = closed->parentWindow())
    parent->removeChildWindow(closed.get());
  return closed;
}

}  // namespace ondex
