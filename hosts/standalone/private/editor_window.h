// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>

#include "appkit/NSWindow.h"
#include "audio_unit/effect_instance.h"
#include "foundation/NSBundle.h"
#include "standalone/effect.h"
#include "standalone/private/view_picture.h"
#include "windows/window_system.h"

namespace ondex {

/// What an Audio Unit host is to the editor: it holds the effect instance, finds the view factory by the name
/// that the bundle gives, owns the view and puts it into a window titled "KV Ondex".
class EditorWindow {
 public:
  /// Nothing is shown yet. The window system must outlive it; there must be an autorelease pool.
  EditorWindow(cocoa::WindowSystem& system, std::span<const ParameterChange> changes);
  ~EditorWindow();
  EditorWindow(const EditorWindow&) = delete;
  EditorWindow& operator=(const EditorWindow&) = delete;

  /// False, after lines in the log, when the bundle has no editor to show or the window system no window.
  bool open();

  cocoa::EffectInstance& effect() { return effect_; }
  cocoa::NSWindow* window() { return window_.get(); }
  /// The preferences window, and its colour panel at work on the first colour, opened as a user does. Null,
  /// after a line in the log, when there is none.
  cocoa::NSWindow* open_preferences();
  cocoa::NSWindow* open_colors();
  /// Writes what the window shows to a PNG file; false, after a line in the log, when that fails.
  bool write_picture(const char* path) { return write_window_picture(*window_, path); }

 private:
  cocoa::WindowSystem& system_;
  cocoa::EffectInstance effect_;
  cocoa::Ref<cocoa::NSBundle> bundle_;
  cocoa::Ref<cocoa::NSWindow> window_;
};

}  // namespace ondex
