// SPDX-License-Identifier: MIT
#include "appkit/NSWindow.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

namespace {

NSRect content_rect(const InterfaceDecoder& decoder) {
  const auto rect = decoder.rect("contentRect");
  if (!rect)
    decoder.fail("has no contentRect");
  return rect.value_or(NSRect{});
}

unsigned style_mask(const InterfaceDecoder& decoder) {
  static constexpr const char* not_offered[] = {
      "miniaturizable",        "resizable",          "utility", "docModal",
      "nonactivatingPanel",    "texturedBackground", "HUD",     "fullSizeContentView",
      "unifiedTitleAndToolbar"};
  const InterfaceDecoder style = decoder.child("styleMask");
  for (const char* name : not_offered) {
    if (style.boolean(name, false))
      style.fail(std::string("asks for a window that is ") + name);
  }
  unsigned mask = NSBorderlessWindowMask;
  if (style.boolean("titled", false))
    mask |= NSTitledWindowMask;
  if (style.boolean("closable", false))
    mask |= NSClosableWindowMask;
  return mask;
}

}  // namespace

NSWindow::NSWindow(InterfaceDecoder& decoder) : NSWindow(content_rect(decoder), style_mask(decoder)) {
  title_ = decoder.attribute("title").value_or("");
  movable_by_background_ = decoder.boolean("movableByWindowBackground", false);
  released_when_closed_ = decoder.boolean("releasedWhenClosed", true);
  visible_at_launch_ = decoder.boolean("visibleAtLaunch", true);
}

void NSWindow::applyInterface(InterfaceDecoder& decoder) {
  setContentView(decoder.object_as<NSView>("contentView").get());
}

void NSWindow::awakeFromNib() {
  // The reference that closing releases. A window controller has taken it out of the window's hands by now.
  if (released_when_closed_)
    retain();
  if (visible_at_launch_)
    orderFront(nullptr);
}

}  // namespace cocoa
