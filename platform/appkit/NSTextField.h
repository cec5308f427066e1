// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "appkit/NSEvent.h"
#include "appkit/NSTextFieldCell.h"
#include "appkit/NSView.h"
#include "foundation/ActionSource.h"
#include "text_editing/EditedText.h"

namespace cocoa {

class NSTextField;

/// What a text field tells its delegate.
class NSTextFieldDelegate {
 public:
  virtual ~NSTextFieldDelegate() = default;
  /// The user has changed the text being edited; what is typed so far need not be a value yet.
  virtual void controlTextDidChange(NSTextField*) {}
};

/// One line of text that the user can edit.
///
/// The field has a value, as text and with a formatter also as a number, and while the user edits it, a text
/// of its own. Return takes the text as the value, if the formatter makes a number of it, and sends the
/// action; a text that is refused stays, marked, until it is changed. Escape goes on to the next responder.
/// Reading the value while it is edited takes what is typed so far, when it is acceptable. Setting it ends
/// editing: what was typed is gone.
///
/// Copied and selected texts go through the window's window system. A text that is pasted may be slow to
/// come: what the user does in the field meanwhile waits for it, in order, and is dropped when editing ends
/// or the keys go. Escape alone does not wait.
class NSTextField : public NSView, public ActionSource {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  explicit NSTextField(NSRect frame);
  explicit NSTextField(InterfaceDecoder& decoder);
  ~NSTextField() override;
  void applyInterface(InterfaceDecoder& decoder) override;

  void setStringValue(NSString* text);
  Ref<NSString> stringValue();
  /// Shown through the formatter; kept as exactly this number while the user does not change it.
  void setFloatValue(float number);
  void setDoubleValue(double number);
  /// 0 when the text is no number. As a float, a number beyond the floats is the largest of them.
  float floatValue();
  double doubleValue();

  /// Retained; null for any text.
  void setFormatter(NSNumberFormatter* formatter) { cell_->formatter = formatter; }
  NSNumberFormatter* formatter() const { return cell_->formatter.get(); }
  void setEditable(bool editable);
  bool isEditable() const { return cell_->editable; }
  void setAlignment(NSTextAlignment alignment);
  void setFont(NSFont* font);
  void setTextColor(NSColor* color);
  void setBackgroundColor(NSColor* color);
  void setDrawsBackground(bool draws);
  void setBordered(bool bordered);
  /// Whether the action is sent, too, when the keys go to another view after a change.
  void setSendsActionOnEndEditing(bool sends) { cell_->sends_action_on_end_editing = sends; }

  void setTarget_action(NSObject* target, SEL action) override;
  /// Not retained.
  void setDelegate(NSTextFieldDelegate* delegate) { delegate_ = delegate; }

  /// Starts editing, with all text selected.
  void selectText(NSObject* sender);
  bool isEditing() const;
  /// Ends editing without taking what was typed; whether there was any.
  bool abortEditing();
  /// Takes what is typed as the value; false, and nothing changes, when it is refused.
  bool validateEditing();
  /// Whether the text in the field was refused and has not been changed since.
  bool isRefused() const;
  /// The text that shows and its selection, for accessibility and for tests.
  const EditedText& editedText() const;

  bool acceptsFirstResponder() const override { return cell_->editable || cell_->selectable; }
  bool becomeFirstResponder() override;
  /// Refused while the text is.
  bool resignFirstResponder() override;
  void becomeKeyWindow() override;
  void resignKeyWindow() override;
  void viewDidMoveToWindow() override;
  bool mouseDownCanMoveWindow() const override { return false; }

  void keyDown(NSEvent* event) override;
  void mouseDown(NSEvent* event) override;
  void mouseDragged(NSEvent* event) override;
  void mouseUp(NSEvent* event) override;
  /// The middle button puts in what is selected anywhere.
  void rightMouseDown(NSEvent* event) override;
  void drawRect(NSRect dirty) override;

 private:
  friend class TextEditingSession;
  friend class TextFieldLine;
  struct Parts;

  const std::string& shownText() const;
  void beginEditing();
  void commit();
  bool sendAction();

  Ref<NSTextFieldCell> cell_ = make<NSTextFieldCell>();
  WeakRef<NSObject> target_;
  SEL action_;
  NSTextFieldDelegate* delegate_ = nullptr;
  std::unique_ptr<Parts> parts_;
};

}  // namespace cocoa
