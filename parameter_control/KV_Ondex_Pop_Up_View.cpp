// SPDX-License-Identifier: MIT
#include "parameter_control/KV_Ondex_Pop_Up_View.h"

#include "appkit/NSWindow.h"
#include "drawing/capsule.h"
#include "quartz/rounded_rect.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr float corner_oval = 20.0F;  // points: twice the radius
constexpr CGFloat glass_alpha = CGFloat(0.66666);

constexpr WeakOutlet weak_outlets[] = {weak_outlet<&KV_Ondex_Pop_Up_View::_entry_field>("_entry_field")};
constexpr auto outlets = outlets_of(weak_outlets);
constexpr Action actions[] = {
    {SEL("done_editing:"), MethodAction<&KV_Ondex_Pop_Up_View::done_editing>::perform}};

}  // namespace

const Class KV_Ondex_Pop_Up_View::class_ = {
    .name = "KV_Ondex_Pop_Up_View",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KV_Ondex_Pop_Up_View>(frame)); },
    .outlets = outlets,
    .actions = actions};

void KV_Ondex_Pop_Up_View::awakeFromNib() {
  log_missing_outlets(*this, weak_outlets);
}

void KV_Ondex_Pop_Up_View::set_callback_onObject(SEL selector, NSObject* host) {
  if (!selector || !host)
    return;
  _callback_selector = selector;
  _callback_host = WeakRef<NSObject>(host);
}

double KV_Ondex_Pop_Up_View::current_value() const {
  return _entry_field ? static_cast<double>(_entry_field->floatValue()) : 0.0;
}

void KV_Ondex_Pop_Up_View::set_current_value(double value) {
  if (_entry_field)
    _entry_field->setFloatValue(static_cast<float>(value));
}

void KV_Ondex_Pop_Up_View::set_format_minimum_maximum(float minimum, float maximum) {
  NSNumberFormatter* formatter = _entry_field ? _entry_field->formatter() : nullptr;
  if (!formatter)
    return;
  formatter->setMaximum(static_cast<double>(maximum));
  formatter->setMinimum(static_cast<double>(minimum));
}

void KV_Ondex_Pop_Up_View::done_editing(NSObject*) {
  const Ref<NSObject> host(_callback_host.get());
  if (host)
    host->performSelector_withObject(_callback_selector, this);
}

void KV_Ondex_Pop_Up_View::viewDidMoveToWindow() {
  if (window() && _entry_field && _entry_field->isDescendantOf(this))
    window()->setInitialFirstResponder(_entry_field);
}

void KV_Ondex_Pop_Up_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  CGContextSetLineWidth(context, 1.0);
  CGContextBeginPath(context);
  // Along the bounds themselves: the outer half of the line is cut off, which is the look.
  add_rounded_rect_to_path_rect_oval_width_oval_height(context, bounds(), corner_oval, corner_oval);
  CGContextSetRGBStrokeColor(context, 0, 0, 0, 1);
  CGContextSetRGBFillColor(context, 0, 0, 0, glass_alpha);
  CGContextDrawPath(context, kCGPathFillStroke);
}

void KV_Ondex_Pop_Up_View::add_rounded_rect_to_path_rect_oval_width_oval_height(CGContextRef context,
                                                                                CGRect rect, float oval_width,
                                                                                float oval_height) {
  add_rounded_rect(context, rect, static_cast<CGFloat>(oval_width), static_cast<CGFloat>(oval_height));
}

}  // namespace ondex
