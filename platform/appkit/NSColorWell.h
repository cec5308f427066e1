// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSView.h"
#include "foundation/ActionSource.h"

namespace cocoa {

class NSColorPanel;

/// A sample of a colour. A click makes it active: the colour panel of its window shows the colour, and the
/// well follows what is picked there. Of the wells of a window one is active at a time.
class NSColorWell : public NSView, public ActionSource {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// Black at first.
  explicit NSColorWell(NSRect frame);
  /// Reads the colour and whether it has a border.
  explicit NSColorWell(InterfaceDecoder& decoder);
  ~NSColorWell() override;
  void applyInterface(InterfaceDecoder& decoder) override;

  NSColor* color() const { return color_.get(); }
  /// Sends no action; null is ignored. An active well's panel shows the colour too.
  void setColor(NSColor* color);
  /// What the panel's user has picked: sends the action if it is another colour.
  void takeColorFrom(const NSColorPanel& panel);
  /// Whether the action is sent for a colour that the user is still changing, with the mouse held in the
  /// panel.
  bool isPicking() const { return picking_; }
  /// The user has released the mouse, or cannot any more: sends the end action if there was a change
  /// meanwhile.
  void pickingEnded();

  bool isActive() const;
  /// Opens the colour panel, or brings it to the front. Nothing without a window.
  void activate();
  void deactivate();

  void setTarget_action(NSObject* target, SEL action) override;
  /// Sent to the same target after the last of the changes that were made with the mouse held.
  void setEndAction(SEL action) { end_action_ = action; }

  void mouseDown(NSEvent* event) override;
  void mouseDragged(NSEvent* event) override;
  /// Activates when the mouse is released over the well.
  void mouseUp(NSEvent* event) override;
  bool mouseDownCanMoveWindow() const override { return false; }
  /// The panel belongs to the window and stays with it.
  void viewDidMoveToWindow() override;
  void drawRect(NSRect dirty) override;

 private:
  void setPressed(bool pressed);
  void send(SEL action);

  Ref<NSColor> color_;
  Ref<NSColorPanel> panel_;  ///< of the window, since this well was first active in it
  WeakRef<NSObject> target_;
  SEL action_;
  SEL end_action_;
  bool bordered_ = true;
  bool pressed_ = false;
  bool picking_ = false;
};

}  // namespace cocoa
