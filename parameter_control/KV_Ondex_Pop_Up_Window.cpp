// SPDX-License-Identifier: MIT
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

void KV_Ondex_Pop_Up_Window::cancel() {
  const Ref<KV_Ondex_Pop_Up_Window> self(this);
  giveUpKey();
  if (delegate())
    delegate()->windowDidResignKey(this);
}

void KV_Ondex_Pop_Up_Window::sendEvent(NSEvent* event) {
  // What was typed before the keys went elsewhere, and is delivered after it, must not be written.
  if (delegate())
    NSWindow::sendEvent(event);
}

}  // namespace ondex
