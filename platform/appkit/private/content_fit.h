// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"
#include "windows/window_system.h"

namespace cocoa {

/// How a window's content lies in the window system's window. Asks and tells nobody.
class ContentFit {
 public:
  /// How much larger than the window system's points those of the content are.
  double factor() const { return factor_; }
  /// Of the content in the window, in points of the content.
  NSPoint origin() const { return origin_; }

  /// Whether the content is drawn as large as the window allows.
  bool scales() const { return scales_; }
  void setScales() { scales_ = true; }

  /// The content gets that factor, and a margin in its points.
  void set(double factor, CGFloat margin);
  /// Makes the content as large as fits into `given`, with its proportions kept, and puts it into the middle,
  /// on a whole one of the `scale` device pixels a point of `given`. False, and nothing changes, without
  /// area.
  bool fitInto(NSSize given, NSSize content, double scale);

  /// A rectangle of the content in the window system's points, from the window's lower left.
  NSRect inWindow(NSRect rect) const;
  /// An event of the window system in points of the content.
  WindowEvent inContent(WindowEvent event) const;

 private:
  bool scales_ = false;
  double factor_ = 1;
  NSPoint origin_;
};

}  // namespace cocoa
