#include "appkit/NSEvent.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "appkit/text_commands.h"

namespace cocoa {

namespace {
constexpr double blink_interval = 0.5;  // seconds
constexpr int middle_button = 2;
}  // namespace

// Beginning and end

void NSTextField::beginEditing() {
  editing_ = true;
  refused_ = false;
  edited_.begin(text_);
  edited_.selectAll();
  scrolled_ = 0;
  selectionChanged(false);
}

void NSTextField::endEditing() {
  editing_ = refused_ = selecting_ = caret_shows_ = false;
  blink_.reset();
  scrolled_ = 0;
  setNeedsDisplay(true);
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
  const bool changed = editing_ && edited_.text() != text_;
  if (!validateEditing()) {
    refused_ = true;
    setNeedsDisplay(true);
    return false;
  }
  endEditing();
  if (changed && cell_->sends_action_on_end_editing)
    sendAction();
  return true;
}

void NSTextField::viewDidMoveToWindow() {
  abortEditing();
}

void NSTextField::becomeKeyWindow() {
  restartBlinking();
}

void NSTextField::resignKeyWindow() {
  restartBlinking();
}

/// Return: takes the text and tells, or shows that it cannot be taken.
void NSTextField::commit() {
  const Ref<NSTextField> self(this);
  if (!validateEditing()) {
    refused_ = true;
    setNeedsDisplay(true);
    return;
  }
  beginEditing();
  sendAction();
}

// Keys

void NSTextField::keyDown(NSEvent* event) {
  const TextCommand command =
      text_command_of(event->keysym(), event->modifierFlags(), event->characters()->UTF8String());
  if (!editing_ || !perform(command))
    NSView::keyDown(event);
}

/// Whether the field knows the command, also when there is nothing to do.
bool NSTextField::perform(const TextCommand& command) {
  using Kind = TextCommand::Kind;
  switch (command.kind) {
    case Kind::none:
      return false;
    case Kind::commit:
      commit();
      return true;
    case Kind::cancel:
      cancelOperation(this);
      return true;
    case Kind::next_field:
      window()->selectNextKeyView(this);
      return true;
    case Kind::previous_field:
      window()->selectPreviousKeyView(this);
      return true;
    case Kind::move:
      edited_.move(command.unit, command.direction, command.extend);
      selectionChanged(true);
      return true;
    case Kind::select_all:
      edited_.selectAll();
      selectionChanged(true);
      return true;
    case Kind::copy:
      offer(Pasteboard::copied);
      return true;
    default:
      if (cell_->editable && change(command))
        textChanged();
      return true;
  }
}

bool NSTextField::change(const TextCommand& command) {
  using Kind = TextCommand::Kind;
  switch (command.kind) {
    case Kind::insert:
      return edited_.insert(command.text);
    case Kind::erase:
      return edited_.erase(command.unit, command.direction);
    case Kind::cut:
      offer(Pasteboard::copied);
      return edited_.hasSelection() &&
             edited_.erase(EditedText::Unit::character, EditedText::Direction::forward);
    case Kind::undo:
      return edited_.undo();
    case Kind::redo:
      return edited_.redo();
    case Kind::paste:
      paste(Pasteboard::copied);
      return false;
    default:
      return false;
  }
}

void NSTextField::textChanged() {
  refused_ = false;
  selectionChanged(false);
  if (delegate_)
    delegate_->controlTextDidChange(this);
}

void NSTextField::selectionChanged(bool by_user) {
  scrollToCaret();
  restartBlinking();
  // Selecting offers, but the field that selects its own value must not take away what the user selected.
  if (by_user && !selecting_)
    offer(Pasteboard::selected);
}

void NSTextField::offer(Pasteboard pasteboard) {
  WindowSystem* system = window() ? window()->windowSystem() : nullptr;
  if (system && edited_.hasSelection())
    system->offerText(pasteboard, std::string(edited_.selectedText()));
}

void NSTextField::paste(Pasteboard pasteboard) {
  WindowSystem* system = window() ? window()->windowSystem() : nullptr;
  if (!system)
    return;
  system->requestText(
      pasteboard, [self = WeakRef<NSTextField>(this)](const std::optional<std::string>& text) {
        // The user may have finished meanwhile.
        const Ref<NSTextField> field(self.get());
        if (field && field->editing_ && text && !text->empty() && field->edited_.insert(*text))
          field->textChanged();
      });
}

// The mouse

void NSTextField::mouseDown(NSEvent* event) {
  // A value that was set has ended editing, but not taken the keys away.
  if (!editing_ && window() && window()->firstResponder() == this)
    beginEditing();
  if (!editing_)
    return NSView::mouseDown(event);
  const size_t offset = offsetAt(convertPoint_fromView(event->locationInWindow(), nullptr));
  selecting_ = true;
  edited_.press(offset, event->clickCount(), (event->modifierFlags() & NSShiftKeyMask) != 0);
  selectionChanged(true);
}

void NSTextField::mouseDragged(NSEvent* event) {
  if (!selecting_)
    return;
  edited_.dragTo(offsetAt(convertPoint_fromView(event->locationInWindow(), nullptr)));
  selectionChanged(true);
}

void NSTextField::mouseUp(NSEvent*) {
  if (!selecting_)
    return;
  selecting_ = false;
  offer(Pasteboard::selected);
}

void NSTextField::rightMouseDown(NSEvent* event) {
  if (event->buttonNumber() != middle_button || !cell_->editable)
    return NSView::rightMouseDown(event);
  if (!editing_)
    selectText(this);
  if (!editing_)
    return;
  edited_.press(offsetAt(convertPoint_fromView(event->locationInWindow(), nullptr)), 1, false);
  selectionChanged(false);
  paste(Pasteboard::selected);
}

// The caret

void NSTextField::restartBlinking() {
  const bool blinks = editing_ && window() && window()->isKeyWindow();
  caret_shows_ = blinks;
  blink_.reset();
  if (blinks)
    scheduleBlink();
  setNeedsDisplay(true);
}

void NSTextField::scheduleBlink() {
  CFRunLoop* loop = CFRunLoopGetCurrent();
  blink_ = loop->addTimer(loop->clock().now() + blink_interval, [this] {
    caret_shows_ = !caret_shows_;
    if (!edited_.hasSelection())
      setNeedsDisplay(true);
    scheduleBlink();
  });
}

}  // namespace cocoa
