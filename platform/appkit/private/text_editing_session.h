// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "appkit/private/pending_paste.h"
#include "foundation/CFRunLoop.h"
#include "text_editing/EditedText.h"
#include "windows/window_system.h"

namespace cocoa {

class NSTextField;
struct TextCommand;

/// What the user does to the text of a field between the beginning and the end of editing: keys, the mouse,
/// pasteboards and the caret. The value is the field's.
class TextEditingSession {
 public:
  explicit TextEditingSession(NSTextField& field) : field_(field) {}

  bool isEditing() const { return stage_ != Stage::idle; }
  bool isRefused() const { return stage_ == Stage::refused; }
  bool showsCaret() const { return caret_shows_; }
  const EditedText& text() const { return text_; }

  /// With that text, all of it selected.
  void begin(const std::string& text);
  void end();
  /// The text cannot be taken; only while it is edited.
  void refuse();
  /// The window has, or no longer has, the keys.
  void restartBlinking();
  bool isPasting() const;
  void abandonPaste();

  // Whether the event was the session's.
  bool keyDown(NSEvent* event);
  bool mouseDown(NSEvent* event);
  bool middleMouseDown(NSEvent* event);
  void mouseDragged(NSEvent* event);
  void mouseUp(NSEvent* event);

 private:
  enum class Stage {
    idle,     ///< next: editing
    editing,  ///< next: refused, or idle
    refused,  ///< next: editing, when the text is changed; or idle
  };

  bool perform(const TextCommand& command);
  bool change(const TextCommand& command);
  void textChanged();
  void selectionChanged(bool by_user);
  size_t offsetOf(const NSEvent& event) const;

  WindowSystem* windowSystem() const;
  void offer(Pasteboard pasteboard) const;
  void paste(Pasteboard pasteboard);
  void takeText(const std::optional<std::string>& text);
  bool waitsForPaste(NSEvent* event);
  void replay(NSEvent* event);

  void scheduleBlink();

  NSTextField& field_;
  EditedText text_;
  Stage stage_ = Stage::idle;
  bool selecting_ = false;  ///< by the mouse
  PendingPaste paste_;
  bool caret_shows_ = false;
  CFRunLoop::AttachmentRef blink_;
};

}  // namespace cocoa
