#include "parameter_control/KV_Ondex_Pop_Up_View.h"

#include "appkit/NSWindow.h"
#include "drawing/capsule.h"

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
  if (oval_width == 0 || oval_height == 0) {
    CGContextAddRect(context, rect);
    return;
  }
  CGContextSaveGState(context);
  CGContextTranslateCTM(context, NSMinX(rect), NSMinY(rect));
  CGContextScaleCTM(context, static_cast<CGFloat>(oval_width), static_cast<CGFloat>(oval_height));
  const CGFloat width = rect.size.width / static_cast<CGFloat>(oval_width);
  const CGFloat height = rect.size.height / static_cast<CGFloat>(oval_height);
  CGContextMoveToPoint(context, width, height / 2);
  CGContextAddArcToPoint(context, width, height, width / 2, height, 0.5);
  CGContextAddArcToPoint(context, 0, height, 0, height / 2, 0.5);
  CGContextAddArcToPoint(context, 0, 0, width / 2, 0, 0.5);
  CGContextAddArcToPoint(context, width, 0, width, height / 2, 0.5);
  CGContextClosePath(context);
  CGContextRestoreGState(context);
}

}  // namespace ondex
