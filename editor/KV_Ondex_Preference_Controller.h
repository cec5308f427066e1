#pragma once

#include "appkit/NSColorWell.h"
#include "appkit/NSWindowController.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "foundation/weak_outlets.h"

namespace ondex {

/// The small window in which the user picks the two display colours, which are stored at once for editors
/// opened afterwards. Its outlets and the wells' action, changeColor:, are connected by its interface file.
class KV_Ondex_Preference_Controller : public cocoa::NSWindowController {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  KV_Ondex_Preference_Controller();
  /// Shows the stored colours in the wells and lifts the window above those of the host. An outlet that is
  /// not connected is named in the log.
  void windowDidLoad() override;
  /// Stores the colour of the well that sends it; nothing for any other sender.
  void changeColor(cocoa::NSObject* sender);

  // Owned by the window.
  cocoa::WeakPointer<cocoa::NSColorWell> _info_color_well;
  cocoa::WeakPointer<cocoa::NSColorWell> _readout_color_well;
  cocoa::WeakPointer<KV_Ondex_Panel_View> panel_view;
};

}  // namespace ondex
