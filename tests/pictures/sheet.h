// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "appkit/NSColor.h"
#include "appkit/NSView.h"

namespace ondex::test {

/// A page of exhibits, each with a caption under it, in rows from the top left, on the warm grey that the
/// controls are made for.
class Sheet : public cocoa::NSView {
 public:
  explicit Sheet(cocoa::CGFloat height);
  void show(cocoa::NSView* view, std::string_view caption);
  /// What comes next begins another row.
  void end_row();
  void drawRect(cocoa::NSRect dirty) override;

 private:
  struct Caption {
    std::string text;
    cocoa::NSRect rect;
  };
  std::vector<Caption> captions_;
  cocoa::CGFloat left_;
  cocoa::CGFloat top_;
  cocoa::CGFloat row_height_ = 0;
};

cocoa::Ref<cocoa::NSColor> rgb(double r, double g, double b, double a = 1);

}  // namespace ondex::test
