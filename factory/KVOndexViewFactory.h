// SPDX-License-Identifier: MIT
#pragma once

#include "audio_unit/AUCocoaUIBase.h"
#include "editor/KVOndexView.h"

namespace ondex {

/// The way in: the class that a host instantiates to get an effect's editor. It may be short-lived; it keeps
/// no reference to the views that it returns.
class KVOndexViewFactory : public cocoa::NSObject, public cocoa::AUCocoaUIBase {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  cocoa::UInt32 interfaceVersion() const override { return 0; }
  cocoa::Ref<cocoa::NSString> description() const override;
  /// A new editor attached to the unit; autoreleased, so there must be a pool. The size is not used: the
  /// interface file decides. Null, after a line in the log, when the interface file cannot be loaded or there
  /// is no memory.
  cocoa::NSView* uiViewForAudioUnit_withSize(cocoa::AudioUnit unit, cocoa::NSSize preferred_size) override;

  /// Set by the interface file while it is loaded, cleared at once afterwards.
  cocoa::WeakPointer<KVOndexView> uiFreshlyLoadedView;
};

}  // namespace ondex
