// SPDX-License-Identifier: MIT
#pragma once

#include "windows/private/repeated_question.h"

namespace cocoa {

class X11Window;

/// What keeps a window from being seen. Owner, server, manager and host each say their part, at any time and
/// in any order: a host may map a window before its owner shows it.
class X11Visibility {
 public:
  explicit X11Visibility(X11Window& window) : window_(window) {}

  bool isShown() const { return shown_; }
  bool isMapped() const { return mapped_; }
  /// Whether somebody may see it.
  bool isSeen() const { return shown_ && mapped_ && !obscured_ && !iconic_ && host_shows_; }

  // By its owner. Nobody can come between a window that is mapped at once and its being mapped.
  void show(bool mapped_at_once);
  void hide();

  // By the server.
  void handleMap() { mapped_ = true; }
  void handleUnmap() { mapped_ = obscured_ = false; }
  void setObscured(bool obscured) { obscured_ = obscured; }

  // The answers come with a later dispatch.

  /// Asks whether the manager has minimised it.
  void askManager();
  /// Asks whether the host's windows show.
  void askHost(double now);

 private:
  X11Window& window_;
  bool shown_ = false;
  bool mapped_ = false;
  bool obscured_ = false;
  bool iconic_ = false;
  bool host_shows_ = true;
  /// A host that hides its window tells nobody inside; asking four times a second costs nothing.
  RepeatedQuestion host_question_{0.25};
};

}  // namespace cocoa
