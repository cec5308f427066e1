// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

#include "editor/KVOndexView.h"
#include "foundation/CFRunLoop.h"
#include "standalone/private/editor_window.h"
#include "windows/headless.h"

namespace ondex {

/// An open editor without a display, drawn once.
struct OpenEditor {
  OpenEditor() {
    if (!editor.open())
      std::abort();
    view = dynamic_cast<KVOndexView*>(editor.window()->contentView());
    cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false);
    system.dispatch();
    repaint();
  }
  void repaint() { editor.window()->displayIfNeeded(); }

  cocoa::NSAutoreleasePool pool;
  cocoa::HeadlessWindowSystem system;
  EditorWindow editor{system, {}};
  KVOndexView* view = nullptr;
};

}  // namespace ondex
