#include "appkit/NSApplication.h"

#include "appkit/NSBox.h"
#include "appkit/NSColor.h"
#include "appkit/NSView.h"
#include "foundation/NSClass.h"

namespace cocoa {

void NSApplicationLoad() {
  static const Class* const classes[] = {&NSBox::class_, &NSColor::class_, &NSView::class_};
  NSRegisterClasses(classes);
}

}  // namespace cocoa
