// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "appkit/NSView.h"
#include "appkit/private/hsb.h"
#include "quartz/CGContext.h"

/// The parts of a colour panel that are worked with the mouse. Each shows what it is told and reports what
/// the user does; nothing changes before the panel says so.

namespace cocoa {

/// A field of one hue: saturation grows to the right, brightness upwards. A ring marks the colour; the field
/// leaves a margin of 8 points for it all around.
class SaturationBrightnessView : public NSView {
 public:
  using NSView::NSView;
  /// Called with the colour under the pointer, on a press and on every drag, which may leave the view.
  std::function<void(const Hsb&)> picked;
  /// Called when the mouse is released.
  std::function<void()> released;
  void show(const Hsb& hsb);

  void mouseDown(NSEvent* event) override { pick(event); }
  void mouseDragged(NSEvent* event) override { pick(event); }
  void mouseUp(NSEvent*) override {
    if (released)
      released();
  }
  bool mouseDownCanMoveWindow() const override { return false; }
  void drawRect(NSRect dirty) override;

 private:
  void pick(NSEvent* event);
  NSRect fieldRect() const;
  void drawField(CGContextRef context) const;
  Hsb hsb_;
};

/// A strip of all hues, red at both ends. A bar marks the colour's.
class HueView : public NSView {
 public:
  using NSView::NSView;
  std::function<void(const Hsb&)> picked;
  /// Called when the mouse is released.
  std::function<void()> released;
  void show(const Hsb& hsb);

  void mouseDown(NSEvent* event) override { pick(event); }
  void mouseDragged(NSEvent* event) override { pick(event); }
  void mouseUp(NSEvent*) override {
    if (released)
      released();
  }
  bool mouseDownCanMoveWindow() const override { return false; }
  void drawRect(NSRect dirty) override;

 private:
  void pick(NSEvent* event);
  Hsb hsb_;
};

/// The current colour at the left, the one before it at the right, where a click brings it back.
class ColorComparisonView : public NSView {
 public:
  using NSView::NSView;
  std::function<void()> restored;
  void show(NSColor* current, NSColor* previous);

  void mouseDown(NSEvent* event) override;
  bool mouseDownCanMoveWindow() const override { return false; }
  void drawRect(NSRect dirty) override;

 private:
  NSRect half(bool right) const;
  Ref<NSColor> current_;
  Ref<NSColor> previous_;
};

}  // namespace cocoa
