// SPDX-License-Identifier: MIT
#include "appkit/NSTextField.h"

#include <algorithm>
#include <limits>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "appkit/private/NSTextField_parts.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSTextField::class_ = {
    .name = "NSTextField",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<NSTextField>(frame)); },
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSTextField>(decoder)); }};

NSTextField::NSTextField(NSRect frame) : NSView(frame), parts_(std::make_unique<Parts>(*this)) {}

NSTextField::NSTextField(InterfaceDecoder& decoder)
    : NSView(decoder), parts_(std::make_unique<Parts>(*this)) {}

NSTextField::~NSTextField() = default;

void NSTextField::applyInterface(InterfaceDecoder& decoder) {
  NSView::applyInterface(decoder);
  if (const Ref<NSTextFieldCell> cell = decoder.object_as<NSTextFieldCell>("cell")) {
    cell_ = cell;
    setStringValue(make<NSString>(cell->title).get());
  }
}

// The value

void NSTextField::setStringValue(NSString* text) {
  abortEditing();
  parts_->value.setText(text ? text->view() : std::string_view(), formatter());
  setNeedsDisplay(true);
}

void NSTextField::setFloatValue(float number) {
  abortEditing();
  parts_->value.setNumber(number, formatter());
  setNeedsDisplay(true);
}

void NSTextField::setDoubleValue(double number) {
  abortEditing();
  parts_->value.setNumber(number, formatter());
  setNeedsDisplay(true);
}

Ref<NSString> NSTextField::stringValue() {
  validateEditing();
  return make<NSString>(parts_->value.text());
}

float NSTextField::floatValue() {
  constexpr double largest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(doubleValue(), -largest, largest));
}

double NSTextField::doubleValue() {
  validateEditing();
  return parts_->value.number();
}

// Editing

bool NSTextField::isEditing() const {
  return parts_->session.isEditing();
}

bool NSTextField::isRefused() const {
  return parts_->session.isRefused();
}

const EditedText& NSTextField::editedText() const {
  return parts_->session.text();
}

const std::string& NSTextField::shownText() const {
  return isEditing() ? editedText().text() : parts_->value.text();
}

bool NSTextField::validateEditing() {
  const std::string& typed = shownText();
  return typed == parts_->value.text() || parts_->value.take(typed, formatter());
}

bool NSTextField::abortEditing() {
  parts_->session.abandonPaste();
  const bool was_editing = isEditing();
  if (was_editing)
    parts_->session.end();
  return was_editing;
}

void NSTextField::beginEditing() {
  parts_->session.begin(parts_->value.text());
}

void NSTextField::selectText(NSObject*) {
  if (window() && window()->firstResponder() != this) {
    window()->makeFirstResponder(this);
    return;
  }
  if (window())
    beginEditing();
}

bool NSTextField::becomeFirstResponder() {
  beginEditing();
  return true;
}

bool NSTextField::resignFirstResponder() {
  // What is there so far is not what the user meant.
  if (parts_->session.isPasting())
    abortEditing();
  const bool changed = shownText() != parts_->value.text();
  if (!validateEditing()) {
    parts_->session.refuse();
    return false;
  }
  parts_->session.end();
  if (changed && cell_->sends_action_on_end_editing)
    sendAction();
  return true;
}

/// Return: takes the text and tells, or shows that it cannot be taken.
void NSTextField::commit() {
  const Ref<NSTextField> self(this);
  if (!validateEditing())
    return parts_->session.refuse();
  beginEditing();
  sendAction();
}

// Events

void NSTextField::viewDidMoveToWindow() {
  abortEditing();
}

void NSTextField::becomeKeyWindow() {
  parts_->session.restartBlinking();
}

void NSTextField::resignKeyWindow() {
  parts_->session.abandonPaste();
  parts_->session.restartBlinking();
}

void NSTextField::keyDown(NSEvent* event) {
  if (!parts_->session.keyDown(event))
    NSView::keyDown(event);
}

void NSTextField::mouseDown(NSEvent* event) {
  if (!parts_->session.mouseDown(event))
    NSView::mouseDown(event);
}

void NSTextField::mouseDragged(NSEvent* event) {
  parts_->session.mouseDragged(event);
}

void NSTextField::mouseUp(NSEvent* event) {
  parts_->session.mouseUp(event);
}

void NSTextField::rightMouseDown(NSEvent* event) {
  constexpr int middle_button = 2;
  if (event->buttonNumber() != middle_button || !parts_->session.middleMouseDown(event))
    NSView::rightMouseDown(event);
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

void NSTextField::drawRect(NSRect) {
  parts_->line.draw(NSGraphicsContext::currentContext()->graphicsPort());
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
