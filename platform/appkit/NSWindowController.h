// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "appkit/NSWindow.h"

namespace cocoa {

/// Owns a window of an interface file, which is loaded when it is first asked for. The controller is the
/// file's owner; the file connects its outlet "window".
class NSWindowController : public NSResponder {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// initWithWindowNibName: of a file in the bundle of the controller's class.
  explicit NSWindowController(std::string_view window_nib_name) : window_nib_name_(window_nib_name) {}
  /// Closes the window and lets go of it.
  ~NSWindowController() override;

  const std::string& windowNibName() const { return window_nib_name_; }
  /// Loads the window if it is not yet; null, after a line in the log, when that fails. A later call tries
  /// again.
  NSWindow* window();
  bool isWindowLoaded() const { return static_cast<bool>(window_); }
  /// Retains the window, which from now on is not released by being closed.
  void setWindow(NSWindow* window);
  virtual void windowWillLoad() {}
  /// The window and all other outlets are there, and everything of the file is awake.
  virtual void windowDidLoad() {}

  /// Shows the window in front and gives it the keys. With a view as the sender, the view's window becomes
  /// its owner.
  void showWindow(NSObject* sender);
  void close();

 private:
  bool loadWindow();

  const std::string window_nib_name_;
  Ref<NSWindow> window_;
  bool loading_ = false;
};

}  // namespace cocoa
