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

  bool isActive() const;
  /// Opens the colour panel, or brings it to the front. Nothing without a window.
  void activate();
  void deactivate();

  void setTarget_action(NSObject* target, SEL action) override;
  void setBordered(bool bordered);

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

  Ref<NSColor> color_;
  Ref<NSColorPanel> panel_;  ///< of the window, since this well was first active in it
  WeakRef<NSObject> target_;
  SEL action_;
  bool bordered_ = true;
  bool pressed_ = false;
};

}  // namespace cocoa
