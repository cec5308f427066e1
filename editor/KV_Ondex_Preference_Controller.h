// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColorWell.h"
#include "appkit/NSWindowController.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "editor/repeated_attempt.h"
#include "foundation/weak_outlets.h"

namespace ondex {

/// The small window in which the user picks the two display colours, which are stored at once for editors
/// opened afterwards. Its outlets and the wells' action, changeColor:, are connected by its interface file.
///
/// A colour is on disk when changeColor: returns, but while the mouse is held in the colour panel: writing
/// each of its motions would keep the host's thread waiting for the disk. These are written together, within
/// 0.2 s, and the last of them when the mouse is released or the panel closes. What cannot be written, as
/// another process is writing, is tried again (repeated_attempt.h), and once more when the controller goes;
/// from then on the process keeps it, until another editor or the process's end takes it along.
class KV_Ondex_Preference_Controller : public cocoa::NSWindowController {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  KV_Ondex_Preference_Controller();
  ~KV_Ondex_Preference_Controller() override;
  /// Shows the stored colours in the wells and lifts the window above those of the host. An outlet that is
  /// not connected is named in the log.
  void windowDidLoad() override;
  /// Stores the colour of the well that sends it; nothing for any other sender.
  void changeColor(cocoa::NSObject* sender);
  /// The wells' end action: what was changed with the mouse held is written.
  void colorChangeEnded(cocoa::NSObject* sender);

  // Owned by the window.
  cocoa::WeakPointer<cocoa::NSColorWell> _info_color_well;
  cocoa::WeakPointer<cocoa::NSColorWell> _readout_color_well;
  cocoa::WeakPointer<KV_Ondex_Panel_View> panel_view;

 private:
  RepeatedAttempt writing_;
};

}  // namespace ondex
