// SPDX-License-Identifier: MIT
#include "appkit/NSApplication.h"

#include "appkit/NSBox.h"
#include "appkit/NSColor.h"
#include "appkit/NSColorWell.h"
#include "appkit/NSFont.h"
#include "appkit/NSMenu.h"
#include "appkit/NSPopUpButton.h"
#include "appkit/NSTextField.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSClass.h"
#include "foundation/NSNumberFormatter.h"

namespace cocoa {

void NSApplicationLoad() {
  static const Class* const classes[] = {&NSBox::class_,
                                         &NSColor::class_,
                                         &NSColorWell::class_,
                                         &NSFont::class_,
                                         &NSMenu::class_,
                                         &NSMenuItem::class_,
                                         &NSNumberFormatter::class_,
                                         &NSPopUpButton::class_,
                                         &NSPopUpButtonCell::class_,
                                         &NSTextField::class_,
                                         &NSTextFieldCell::class_,
                                         &NSView::class_,
                                         &NSWindow::class_};
  NSRegisterClasses(classes);
}

}  // namespace cocoa
