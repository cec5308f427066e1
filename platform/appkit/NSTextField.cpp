#include "appkit/NSTextField.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "appkit/NSWindow.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSTextField::class_ = {
    .name = "NSTextField",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSTextField>(frame)); },
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSTextField>(decoder)); }};

NSTextField::NSTextField(NSRect frame) : NSView(frame) {}

NSTextField::NSTextField(InterfaceDecoder& decoder) : NSView(decoder) {}

NSTextField::~NSTextField() = default;

void NSTextField::applyInterface(InterfaceDecoder& decoder) {
  NSView::applyInterface(decoder);
  if (const Ref<NSTextFieldCell> cell = decoder.object_as<NSTextFieldCell>("cell")) {
    cell_ = cell;
    setStringValue(make<NSString>(cell->title).get());
  }
}

// The value

void NSTextField::setValue(std::string text, double number) {
  abortEditing();
  text_ = std::move(text);
  number_ = number;
  setNeedsDisplay(true);
}

namespace {
/// Every digit of numbers without a formatter.
const NSNumberFormatter& plain_formatter() {
  static const Ref<NSNumberFormatter> formatter = [] {
    auto made = make<NSNumberFormatter>();
    made->setMaximumFractionDigits(std::numeric_limits<int>::max());
    return made;
  }();
  return *formatter;
}
}  // namespace

void NSTextField::setStringValue(NSString* text) {
  const std::string_view view = text ? text->view() : std::string_view();
  const NSNumberFormatter& reader = formatter() ? *formatter() : plain_formatter();
  setValue(std::string(view), reader.numberFromString(view).value_or(0));
}

Ref<NSString> NSTextField::stringValue() {
  validateEditing();
  return make<NSString>(text_);
}

void NSTextField::setFloatValue(float number) {
  const NSNumberFormatter& writer = formatter() ? *formatter() : plain_formatter();
  setValue(writer.stringFromNumber(number), static_cast<double>(number));
}

void NSTextField::setDoubleValue(double number) {
  setValue(textOf(number), number);
}

std::string NSTextField::textOf(double number) const {
  return (formatter() ? *formatter() : plain_formatter()).stringFromNumber(number);
}

float NSTextField::floatValue() {
  constexpr double largest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(doubleValue(), -largest, largest));
}

double NSTextField::doubleValue() {
  validateEditing();
  return number_;
}

bool NSTextField::validateEditing() {
  if (!editing_ || edited_.text() == text_)
    return true;
  const std::string& typed = edited_.text();
  if (!formatter()) {
    number_ = plain_formatter().numberFromString(typed).value_or(0);
    text_ = typed;
    return true;
  }
  const auto number = formatter()->numberFromString(typed);
  if (!number)
    return false;
  number_ = *number;
  text_ = typed;
  return true;
}

bool NSTextField::abortEditing() {
  abandonPaste();
  const bool was_editing = editing_;
  if (was_editing)
    endEditing();
  return was_editing;
}

// Looks

void NSTextField::setEditable(bool editable) {
  cell_->editable = editable;
  if (!editable)
    abortEditing();
}

void NSTextField::setAlignment(NSTextAlignment alignment) {
  cell_->alignment = alignment;
  setNeedsDisplay(true);
}

void NSTextField::setFont(NSFont* font) {
  if (!font)
    return;
  cell_->font = font;
  setNeedsDisplay(true);
}

void NSTextField::setTextColor(NSColor* color) {
  if (!color)
    return;
  cell_->text_color = color;
  setNeedsDisplay(true);
}

void NSTextField::setBackgroundColor(NSColor* color) {
  if (!color)
    return;
  cell_->background_color = color;
  setNeedsDisplay(true);
}

void NSTextField::setDrawsBackground(bool draws) {
  cell_->draws_background = draws;
  setNeedsDisplay(true);
}

void NSTextField::setBordered(bool bordered) {
  cell_->bordered = bordered;
  setNeedsDisplay(true);
}

// Target and action

void NSTextField::setTarget_action(NSObject* target, SEL action) {
  target_ = WeakRef<NSObject>(target);
  action_ = action;
}

bool NSTextField::sendAction() {
  const Ref<NSObject> target(target_.get());
  if (!target || !action_)
    return false;
  target->performSelector_withObject(action_, this);
  return true;
}

}  // namespace cocoa
