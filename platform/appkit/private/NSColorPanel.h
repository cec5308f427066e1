// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "appkit/NSColor.h"
#include "appkit/NSColorWell.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "appkit/private/hsb.h"

namespace cocoa {

class ColorComparisonView;
class HueView;
class SaturationBrightnessView;

/// The window in which a colour is picked: a square of saturations and brightnesses beside a strip of hues,
/// the colour beside the one there was before, and its numbers, which can be typed.
///
/// There is one for each window with colour wells, not one for the process: a host may have a panel of its
/// own, and an editor must leave nothing behind. The wells of its window keep it. Colours are opaque, in
/// device RGB.
class NSColorPanel : public NSWindow, private NSWindowDelegate {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// The panel of the window, made when there is none yet.
  static Ref<NSColorPanel> panelOf(NSWindow& window);
  ~NSColorPanel() override;

  NSColor* color() const { return color_.get(); }
  /// Shows the colour, without telling the well. Null is ignored.
  void setColor(NSColor* color);
  /// The well's colour when it became active; a click on it brings it back.
  NSColor* previousColor() const { return previous_.get(); }

  /// Picks for that well from now on, starting with its colour; for none when null. Not retained.
  void edit(NSColorWell* well);
  NSColorWell* well() const { return well_.get(); }
  /// Whether the user holds the mouse on a field of colours, so that the colour may change with each motion.
  bool isPicking() const { return picking_; }

  /// Red, green and blue from 0 to 255, and all three in hexadecimal.
  enum Entry : size_t { red, green, blue, hexadecimal };
  NSTextField* entry(Entry which) const { return entries_[which].get(); }
  /// Their action.
  void takeEntry(NSObject* sender);
  /// Escape puts back what shows if something has been typed, and else closes the panel.
  void cancelOperation(NSObject* sender) override;

 protected:
  /// Beside the window with the wells, where both can be seen.
  NSPoint originFor(NSRect owner, NSSize screen) const override;

 private:
  template <typename T, typename... Args>
  friend Ref<T> make(Args&&...);
  NSColorPanel();
  void windowWillClose(NSWindow* window) override;
  void addViews();
  void pick(const Hsb& hsb);
  void endPicking();
  void restore();
  void take(NSColor* color);
  void showColor();
  double number(Entry which) const;

  Ref<NSColor> color_ = NSColor::blackColor();
  Ref<NSColor> previous_ = NSColor::blackColor();
  Hsb hsb_;
  bool picking_ = false;
  WeakRef<NSColorWell> well_;
  Ref<SaturationBrightnessView> field_;
  Ref<HueView> hues_;
  Ref<ColorComparisonView> comparison_;
  std::array<Ref<NSTextField>, 4> entries_;
};

}  // namespace cocoa
