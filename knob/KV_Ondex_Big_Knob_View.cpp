// SPDX-License-Identifier: MIT
#include "knob/KV_Ondex_Big_Knob_View.h"

#include <cmath>
#include <numbers>

#include "appkit/NSEvent.h"
#include "scale_type/scale_type.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat knob_inset = 5.0;
constexpr double pointer_inset = 12.0;                    // of the pointer's circle from the knob's edge
constexpr double theta_at_minimum = 3.9269908169872414;   // 5π/4, lower left
constexpr double theta_at_maximum = -0.7853981633974483;  // -π/4, lower right
constexpr double wheel_gain = 0.001;                      // of the span, a unit
constexpr int restore_click_count = 2;

}  // namespace

const Class KV_Ondex_Big_Knob_View::class_ = {
    .name = "KV_Ondex_Big_Knob_View",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) -> Ref<NSObject> { return make<KV_Ondex_Big_Knob_View>(frame); },
};

KV_Ondex_Big_Knob_View::KV_Ondex_Big_Knob_View(NSRect frame)
    : NSView(frame), _theta_min(theta_at_minimum), _theta_max(theta_at_maximum) {
  _control_rect = bounds();
  _knob_rect = NSInsetRect(_control_rect, knob_inset, knob_inset);
  _origin = {_knob_rect.origin.x + _knob_rect.size.width / 2,
             _knob_rect.origin.y + _knob_rect.size.height / 2};
  _radius = static_cast<double>(_knob_rect.size.width) / 2.0 - pointer_inset;
  update_scales();
  update_knob_location();
  _knob_hit_path.reset(CGPathCreateMutable());
  CGPathAddEllipseInRect(_knob_hit_path.get(), nullptr, _control_rect);
  setNeedsDisplay(true);
}

void KV_Ondex_Big_Knob_View::awakeFromNib() {
  setNeedsDisplay(true);
}

// Configuration and value

void KV_Ondex_Big_Knob_View::set_callback_onObject(SEL selector, NSObject* host) {
  _callback.set(selector, host, *this);
}

void KV_Ondex_Big_Knob_View::set_values_minimum_maximum_default_value_scale_type(double minimum,
                                                                                 double maximum,
                                                                                 double default_value,
                                                                                 int32_t scale_type) {
  _default_value = default_value;
  _minimum_value = maximum < minimum ? maximum : minimum;
  _maximum_value = _minimum_value > maximum ? _minimum_value : maximum;
  _default_value = clamped(_default_value, _minimum_value, _maximum_value);
  if (_scale_type != scale_type) {
    _value = plain_value(_scale_type, _value);
    _scale_type = scale_type;
  }
  _default_value = mapped_value(_scale_type, _default_value);
  _minimum_value = mapped_value(_scale_type, _minimum_value);
  _maximum_value = mapped_value(_scale_type, _maximum_value);
  // Under an unchanged scale type the value is mapped twice; the one that replaces it follows.
  _value = clamped(mapped_value(_scale_type, _value), _minimum_value, _maximum_value);
  update_scales();
  redraw_pointer();
}

void KV_Ondex_Big_Knob_View::update_scales() {
  _scale = (_theta_max - _theta_min) / (_maximum_value - _minimum_value);
  _rotation_scale = (_maximum_value - _minimum_value) * wheel_gain;
}

void KV_Ondex_Big_Knob_View::set_current_value(double value) {
  _value = clamped(mapped_value(_scale_type, value), _minimum_value, _maximum_value);
  show_value();
}

double KV_Ondex_Big_Knob_View::current_value() const {
  return plain_value(_scale_type, _value);
}

void KV_Ondex_Big_Knob_View::update_knob_location() {
  const double angle = (_value - _minimum_value) * _scale + _theta_min;
  _x = std::cos(angle) * _radius + _origin.x;
  _y = std::sin(angle) * _radius + _origin.y;
}

void KV_Ondex_Big_Knob_View::show_value() {
  update_knob_location();
  redraw_pointer();
}

// Gestures

NSPoint KV_Ondex_Big_Knob_View::point_of(const NSEvent& event) const {
  return convertPoint_fromView(event.locationInWindow(), nullptr);
}

void KV_Ondex_Big_Knob_View::set_value_from_point(NSPoint point) {
  const CGFloat dx = point.x - _origin.x;
  const CGFloat dy = point.y - _origin.y;
  double angle = std::atan2(static_cast<float>(dy), static_cast<float>(dx));
  // Left of straight down the angles go on beyond π, so that the seam lies between the ends of the travel.
  if (dx < 0 && angle < 0)
    angle += 2 * std::numbers::pi;
  _value = (angle - _theta_min) / _scale + _minimum_value;
  if (_value < _minimum_value) {
    _value = _minimum_value;
  } else if (_value > _maximum_value) {
    _value = _maximum_value;
  }
}

void KV_Ondex_Big_Knob_View::mouseDown(NSEvent* event) {
  if (event->clickCount() == restore_click_count) {
    _value = _default_value;
  } else {
    const NSPoint point = point_of(*event);
    if (CGPathContainsPoint(_knob_hit_path.get(), nullptr, point, false)) {
      _mouse_is_down = true;
      set_value_from_point(point);
    }
  }
  // A press beside the knob is reported too, with the value as it was.
  _callback.send(this);
  show_value();
}

void KV_Ondex_Big_Knob_View::mouseDragged(NSEvent* event) {
  if (!_mouse_is_down)
    return;
  const NSPoint point = point_of(*event);
  _x = point.x;
  _y = point.y;
  set_value_from_point(point);
  _callback.send(this);
  _mouse_is_down = true;
  show_value();
}

void KV_Ondex_Big_Knob_View::mouseUp(NSEvent*) {
  _mouse_is_down = false;
  redraw_pointer();
}

void KV_Ondex_Big_Knob_View::scrollWheel(NSEvent* event) {
  const double turn = static_cast<double>(event->deltaY()) - static_cast<double>(event->deltaX());
  const double turned = _value + turn * _rotation_scale;
  if (_minimum_value > turned) {
    _value = _minimum_value;
  } else if (_maximum_value >= turned) {
    _value = turned;
  } else {
    _value = _maximum_value;
  }
  _callback.send(this);
  show_value();
}

}  // namespace ondex
