// SPDX-License-Identifier: MIT
#include "response_graph/KV_FM_Oscillator_Response_View.h"

#include <cmath>

#include "drawing/capsule.h"
#include "drawing/color_rules.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat vertical_inset = 5;
constexpr CGFloat curve_width = 2;
constexpr int curve_points = 101;
constexpr float one_period = 6.2831855F;  // 2 pi

}  // namespace

const Class KV_FM_Oscillator_Response_View::class_ = {
    .name = "KV_FM_Oscillator_Response_View",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KV_FM_Oscillator_Response_View>(frame)); }};

KV_FM_Oscillator_Response_View::KV_FM_Oscillator_Response_View(NSRect frame)
    : NSView(frame),
      _body_rect(bounds()),
      _body_panel_rect(middle_rect(bounds())),
      _control_rect(NSInsetRect(_body_panel_rect, 0, vertical_inset)),
      _left_rect(left_cap_rect(bounds())),
      _right_rect(right_cap_rect(bounds())),
      _graph_frame(_control_rect) {
  set_x_minimum_maximum(0.0F, one_period);
  set_y_minimum_maximum(-1.0F, 1.0F);
  set_text_color(NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 0, 1).get());
}

void KV_FM_Oscillator_Response_View::awakeFromNib() {}
void KV_FM_Oscillator_Response_View::draw_background() {}

void KV_FM_Oscillator_Response_View::set_x_minimum_maximum(float minimum, float maximum) {
  _x_min = static_cast<CGFloat>(minimum);
  _x_max = static_cast<CGFloat>(maximum);
  _x_scale = NSWidth(_graph_frame) / (_x_max - _x_min);
}

void KV_FM_Oscillator_Response_View::set_y_minimum_maximum(float minimum, float maximum) {
  _y_min = static_cast<CGFloat>(minimum);
  _y_max = static_cast<CGFloat>(maximum);
  _y_scale = NSHeight(_graph_frame) / (_y_max - _y_min);
}

float KV_FM_Oscillator_Response_View::location_for_x(float x) const {
  return static_cast<float>((static_cast<CGFloat>(x) - _x_min) * _x_scale + NSMinX(_graph_frame));
}

float KV_FM_Oscillator_Response_View::location_for_y(float y) const {
  return static_cast<float>((static_cast<CGFloat>(y) - _y_min) * _y_scale + NSMinY(_graph_frame));
}

float KV_FM_Oscillator_Response_View::x_for_location(float location) const {
  return static_cast<float>((static_cast<CGFloat>(location) - NSMinX(_graph_frame)) / _x_scale + _x_min);
}

float KV_FM_Oscillator_Response_View::y_for_location(float location) const {
  return static_cast<float>((static_cast<CGFloat>(location) - NSMinY(_graph_frame)) / _y_scale + _y_min);
}

float KV_FM_Oscillator_Response_View::response_for_value(float x) const {
  const auto phase = static_cast<CGFloat>(x);
  const float modulator = std::sin(static_cast<float>(_beta * phase));
  return std::sin(static_cast<float>(phase + _m * static_cast<CGFloat>(modulator)));
}

void KV_FM_Oscillator_Response_View::set_modulation_index(float index) {
  _m = static_cast<CGFloat>(index);
  drawGraph();
}

void KV_FM_Oscillator_Response_View::set_modulation_factor(float factor) {
  _beta = static_cast<CGFloat>(factor);
  drawGraph();
}

void KV_FM_Oscillator_Response_View::set_curve_color_fill_color(NSColor* curve, NSColor* fill) {
  if (curve)
    _curve_color = curve;
  if (fill)
    _fill_color = fill;
}

void KV_FM_Oscillator_Response_View::set_text_color(NSColor* color) {
  if (color)
    _text_color = color;
  draw_background();
  setNeedsDisplay(true);
}

void KV_FM_Oscillator_Response_View::drawGraph() {
  if (_curve_path) {
    _curve_path->removeAllPoints();
  } else {
    _curve_path = NSBezierPath::bezierPath();
  }
  if (!_curve_color)
    _curve_color = NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 0, CGFloat(0.3));
  _curve_path->setLineWidth(curve_width);
  add_curve();
  setNeedsDisplay(true);
}

void KV_FM_Oscillator_Response_View::add_curve() {
  const auto point_at = [this](CGFloat x) {
    const float y = location_for_y(response_for_value(x_for_location(static_cast<float>(x))));
    return NSPoint{x, static_cast<CGFloat>(y)};
  };
  const CGFloat step = NSWidth(_graph_frame) * CGFloat(0.01);
  CGFloat x = NSMinX(_graph_frame);
  const NSPoint start = point_at(x);
  // There is no curve of a modulation that is not a number.
  if (!std::isfinite(start.y))
    return;
  _curve_path->moveToPoint(start);
  // The first line has no length: it ends at the point that the path has moved to.
  for (int i = 0; i < curve_points; ++i) {
    _curve_path->lineToPoint(point_at(x));
    x += step;
  }
}

void KV_FM_Oscillator_Response_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  do_body_panel(context);
  do_right_end_cap(context);
  do_left_end_cap(context);
  CGContextSaveGState(context);
  NSBezierPath::clipRect(_graph_frame);
  if (_curve_path) {
    if (_curve_color && _fill_color) {
      _fill_color->set();
      _curve_path->fill();
      _curve_color->set();
      _curve_path->stroke();
    } else {
      NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 1, CGFloat(0.4))->set();
      _curve_path->fill();
    }
  }
  CGContextRestoreGState(context);
  do_shine(context);
}

void KV_FM_Oscillator_Response_View::do_body_panel(CGContextRef context) {
  fill_rect_upwards(context, _body_panel_rect, capsule_rules::bg_panel_evaluate, &body_colors);
}

void KV_FM_Oscillator_Response_View::do_left_end_cap(CGContextRef context) {
  fill_left_cap(context, _left_rect, plain_cap_colors);
}

void KV_FM_Oscillator_Response_View::do_right_end_cap(CGContextRef context) {
  fill_right_cap(context, _right_rect, plain_cap_colors);
}

void KV_FM_Oscillator_Response_View::do_shine(CGContextRef context) {
  fill_rect_upwards(context, _body_rect, graph_rules::shine_overlay_evaluate, &shine_colors);
}

}  // namespace ondex
