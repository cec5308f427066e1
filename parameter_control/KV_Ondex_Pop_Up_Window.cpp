#include "parameter_control/KV_Ondex_Pop_Up_Window.h"

namespace ondex {

using namespace cocoa;

const Class KV_Ondex_Pop_Up_Window::class_ = {.name = "KV_Ondex_Pop_Up_Window",
                                              .superclass = &NSWindow::class_};

KV_Ondex_Pop_Up_Window::KV_Ondex_Pop_Up_Window(NSRect content_rect, unsigned)
    : NSWindow(content_rect, NSBorderlessWindowMask) {
  setOpaque(false);
  setHasShadow(true);
}

void KV_Ondex_Pop_Up_Window::cancelOperation(NSObject*) {
  giveUpKey();
}

}  // namespace ondex
