// SPDX-License-Identifier: MIT
#include "appkit/private/text_editing_session.h"

#include "appkit/NSWindow.h"
#include "appkit/private/NSTextField_parts.h"
#include "appkit/private/text_commands.h"

namespace cocoa {

namespace {
constexpr double blink_interval = 0.5;  // seconds
}  // namespace

void TextEditingSession::begin(const std::string& text) {
  stage_ = Stage::editing;
  text_.begin(text);
  text_.selectAll();
  field_.parts_->line.scrollToStart();
  selectionChanged(false);
}

void TextEditingSession::end() {
  stage_ = Stage::idle;
  selecting_ = caret_shows_ = false;
  blink_.reset();
  field_.parts_->line.scrollToStart();
  field_.setNeedsDisplay(true);
}

void TextEditingSession::refuse() {
  stage_ = Stage::refused;
  field_.setNeedsDisplay(true);
}

// Keys

bool TextEditingSession::keyDown(NSEvent* event) {
  const TextCommand command =
      text_command_of(event->keysym(), event->modifierFlags(), event->characters()->UTF8String());
  if (!isPasting() || command.kind == TextCommand::Kind::cancel)
    return isEditing() && perform(command);
  // A key that is held would ask a slow owner again and again.
  if (command.kind != TextCommand::Kind::paste || !event->isARepeat())
    paste_.hold(event);
  return true;
}

/// Whether the session knows the command, also when there is nothing to do.
bool TextEditingSession::perform(const TextCommand& command) {
  using Kind = TextCommand::Kind;
  switch (command.kind) {
    case Kind::none:
      return false;
    case Kind::commit:
      field_.commit();
      return true;
    case Kind::cancel:
      abandonPaste();
      field_.cancelOperation(&field_);
      return true;
    case Kind::next_field:
      if (NSWindow* const window = field_.window())
        window->selectNextKeyView(&field_);
      return true;
    case Kind::previous_field:
      if (NSWindow* const window = field_.window())
        window->selectPreviousKeyView(&field_);
      return true;
    case Kind::move:
      text_.move(command.unit, command.direction, command.extend);
      selectionChanged(true);
      return true;
    case Kind::select_all:
      text_.selectAll();
      selectionChanged(true);
      return true;
    case Kind::copy:
      offer(Pasteboard::copied);
      return true;
    default:
      if (field_.isEditable() && change(command))
        textChanged();
      return true;
  }
}

bool TextEditingSession::change(const TextCommand& command) {
  using Kind = TextCommand::Kind;
  switch (command.kind) {
    case Kind::insert:
      return text_.insert(command.text);
    case Kind::erase:
      return text_.erase(command.unit, command.direction);
    case Kind::cut:
      offer(Pasteboard::copied);
      return text_.hasSelection() && text_.erase(EditedText::Unit::character, EditedText::Direction::forward);
    case Kind::undo:
      return text_.undo();
    case Kind::redo:
      return text_.redo();
    case Kind::paste:
      paste(Pasteboard::copied);
      return false;
    default:
      return false;
  }
}

void TextEditingSession::textChanged() {
  stage_ = Stage::editing;
  selectionChanged(false);
  if (field_.delegate_)
    field_.delegate_->controlTextDidChange(&field_);
}

void TextEditingSession::selectionChanged(bool by_user) {
  field_.parts_->line.scrollToCaret();
  restartBlinking();
  // Selecting offers, but the field that selects its own value must not take away what the user selected.
  if (by_user && !selecting_)
    offer(Pasteboard::selected);
}

// Pasteboards

WindowSystem* TextEditingSession::windowSystem() const {
  return field_.window() ? field_.window()->windowSystem() : nullptr;
}

void TextEditingSession::offer(Pasteboard pasteboard) const {
  WindowSystem* const system = windowSystem();
  if (system && text_.hasSelection())
    system->offerText(pasteboard, std::string(text_.selectedText()));
}

void TextEditingSession::paste(Pasteboard pasteboard) {
  WindowSystem* const system = windowSystem();
  if (!system)
    return;
  const unsigned number = paste_.begin(system);
  system->requestText(pasteboard,
                      [self = WeakRef<NSTextField>(&field_), number](const std::optional<std::string>& text) {
                        const Ref<NSTextField> field(self.get());
                        if (!field)
                          return;
                        // The user may have finished meanwhile.
                        TextEditingSession& session = field->parts_->session;
                        if (session.isPasting() && session.paste_.isNewest(number))
                          session.takeText(text);
                      });
}

bool TextEditingSession::isPasting() const {
  return paste_.waitsFor(windowSystem());
}

void TextEditingSession::takeText(const std::optional<std::string>& text) {
  paste_.end();
  if (text && !text->empty() && text_.insert(*text))
    textChanged();
  // One of those that have waited may paste again, or end it all.
  while (!isPasting()) {
    const Ref<NSEvent> event = paste_.next();
    if (!event)
      return;
    replay(event.get());
  }
}

void TextEditingSession::abandonPaste() {
  // The release of the button may be among what is dropped.
  if (paste_.abandon())
    selecting_ = false;
}

bool TextEditingSession::waitsForPaste(NSEvent* event) {
  if (!isPasting())
    return false;
  paste_.hold(event);
  return true;
}

void TextEditingSession::replay(NSEvent* event) {
  switch (event->type()) {
    case WindowEventType::mouse_down:
      return event->buttonNumber() == 0 ? field_.mouseDown(event) : field_.rightMouseDown(event);
    case WindowEventType::mouse_dragged:
      return field_.mouseDragged(event);
    case WindowEventType::mouse_up:
      return field_.mouseUp(event);
    default:
      // The key before it may have given the keys to another view.
      if (NSWindow* const window = field_.window())
        window->sendEvent(event);
  }
}

// The mouse

size_t TextEditingSession::offsetOf(const NSEvent& event) const {
  return field_.parts_->line.offsetAt(field_.convertPoint_fromView(event.locationInWindow(), nullptr));
}

bool TextEditingSession::mouseDown(NSEvent* event) {
  if (waitsForPaste(event))
    return true;
  // A value that was set has ended editing, but not taken the keys away.
  if (!isEditing() && field_.window() && field_.window()->firstResponder() == &field_)
    field_.beginEditing();
  if (!isEditing())
    return false;
  const size_t offset = offsetOf(*event);
  selecting_ = true;
  text_.press(offset, event->clickCount(), (event->modifierFlags() & NSShiftKeyMask) != 0);
  selectionChanged(true);
  return true;
}

bool TextEditingSession::middleMouseDown(NSEvent* event) {
  if (!field_.isEditable())
    return false;
  if (waitsForPaste(event))
    return true;
  if (!isEditing())
    field_.selectText(&field_);
  if (!isEditing())
    return true;
  text_.press(offsetOf(*event), 1, false);
  selectionChanged(false);
  paste(Pasteboard::selected);
  return true;
}

void TextEditingSession::mouseDragged(NSEvent* event) {
  if (waitsForPaste(event) || !selecting_)
    return;
  text_.dragTo(offsetOf(*event));
  selectionChanged(true);
}

void TextEditingSession::mouseUp(NSEvent* event) {
  if (waitsForPaste(event) || !selecting_)
    return;
  selecting_ = false;
  offer(Pasteboard::selected);
}

// The caret

void TextEditingSession::restartBlinking() {
  const bool blinks = isEditing() && field_.window() && field_.window()->isKeyWindow();
  caret_shows_ = blinks;
  blink_.reset();
  if (blinks)
    scheduleBlink();
  field_.setNeedsDisplay(true);
}

void TextEditingSession::scheduleBlink() {
  CFRunLoop* loop = CFRunLoopGetCurrent();
  blink_ = loop->addTimer(loop->clock().now() + blink_interval, [this] {
    caret_shows_ = !caret_shows_;
    if (!text_.hasSelection())
      field_.setNeedsDisplay(true);
    scheduleBlink();
  });
}

}  // namespace cocoa
