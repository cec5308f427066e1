#include "appkit/NSEvent.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "appkit/private/text_commands.h"

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
  // What is there so far is not what the user meant.
  if (isPasting())
    abortEditing();
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
  abandonPaste();
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
  if (isPasting() && command.kind != TextCommand::Kind::cancel) {
    // A key that is held would ask a slow owner again and again.
    if (command.kind != TextCommand::Kind::paste || !event->isARepeat())
      waiting_.emplace_back(event);
    return;
  }
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
      abandonPaste();
      cancelOperation(this);
      return true;
    case Kind::next_field:
      if (window())
        window()->selectNextKeyView(this);
      return true;
    case Kind::previous_field:
      if (window())
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
  asked_ = system;
  const unsigned number = ++pastes_;
  system->requestText(pasteboard,
                      [self = WeakRef<NSTextField>(this), number](const std::optional<std::string>& text) {
                        // The user may have finished meanwhile.
                        const Ref<NSTextField> field(self.get());
                        if (field && field->isPasting() && field->pastes_ == number)
                          field->takeText(text);
                      });
}

/// A window system that has gone answers no more.
bool NSTextField::isPasting() const {
  return asked_ && window() && window()->windowSystem() == asked_;
}

void NSTextField::takeText(const std::optional<std::string>& text) {
  asked_ = nullptr;
  if (text && !text->empty() && edited_.insert(*text))
    textChanged();
  // One of those that have waited may paste again, or end it all.
  while (!isPasting() && !waiting_.empty()) {
    const Ref<NSEvent> event = std::move(waiting_.front());
    waiting_.pop_front();
    replay(event.get());
  }
}

void NSTextField::abandonPaste() {
  asked_ = nullptr;
  // The release of the button may be among them.
  if (!waiting_.empty())
    selecting_ = false;
  waiting_.clear();
}

bool NSTextField::waitsForPaste(NSEvent* event) {
  if (!isPasting())
    return false;
  waiting_.emplace_back(event);
  return true;
}

void NSTextField::replay(NSEvent* event) {
  switch (event->type()) {
    case WindowEventType::mouse_down:
      return event->buttonNumber() == 0 ? mouseDown(event) : rightMouseDown(event);
    case WindowEventType::mouse_dragged:
      return mouseDragged(event);
    case WindowEventType::mouse_up:
      return mouseUp(event);
    default:
      // The key before it may have given the keys to another view.
      if (window())
        window()->sendEvent(event);
  }
}

// The mouse

void NSTextField::mouseDown(NSEvent* event) {
  if (waitsForPaste(event))
    return;
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
  if (waitsForPaste(event) || !selecting_)
    return;
  edited_.dragTo(offsetAt(convertPoint_fromView(event->locationInWindow(), nullptr)));
  selectionChanged(true);
}

void NSTextField::mouseUp(NSEvent* event) {
  if (waitsForPaste(event) || !selecting_)
    return;
  selecting_ = false;
  offer(Pasteboard::selected);
}

void NSTextField::rightMouseDown(NSEvent* event) {
  if (event->buttonNumber() != middle_button || !cell_->editable)
    return NSView::rightMouseDown(event);
  if (waitsForPaste(event))
    return;
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
