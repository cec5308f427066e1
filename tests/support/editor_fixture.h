// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "appkit/NSApplication.h"
#include "audio_unit/effect_instance.h"
#include "build_paths.h"
#include "editor/KVOndexView.h"
#include "factory/KVOndexViewFactory.h"
#include "factory/bundle_classes.h"
#include "foundation/CFPreferences.h"
#include "foundation/CFRunLoop.h"
#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"
#include "manual_clock.h"
#include "standalone/effect.h"
#include "temporary_folder.h"

namespace ondex::test {

/// An effect with its editor, a clock that stands still, and preferences of the test's own.
class EditorFixture : public testing::Test {
 protected:
  struct Write {
    unsigned id;
    float value;
    bool operator==(const Write&) const = default;
  };

  EditorFixture() {
    cocoa::NSApplicationLoad();
    cocoa::CFRunLoopGetCurrent()->setClock(&clock);
    // What an earlier test has kept in memory is dropped: nothing is pending.
    synchronize();
    effect.onWrite([this](unsigned id, float value) { writes.push_back({id, value}); });
  }
  ~EditorFixture() override {
    editor = nullptr;
    cocoa::CFRunLoopGetCurrent()->setClock(nullptr);
  }

  /// Asks the factory as a host does and lets the first synchronisation arrive.
  void open() {
    editor = make_editor();
    settle();
  }
  cocoa::Ref<KVOndexView> make_editor() {
    const cocoa::NSAutoreleasePool loading;
    const auto factory = cocoa::make<KVOndexViewFactory>();
    return dynamic_cast<KVOndexView*>(factory->uiViewForAudioUnit_withSize(effect.audio_unit(), {}));
  }
  /// Lets the time pass in which events are collected.
  void settle() {
    clock.advance(0.06);
    turn();
  }
  static void turn() { cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false); }
  static void synchronize() {
    cocoa::CFPreferencesSynchronize(cocoa::kCFPreferencesAnyApplication, cocoa::kCFPreferencesCurrentUser,
                                    cocoa::kCFPreferencesCurrentHost);
  }
  std::vector<KV_Ondex_Parameter_Control_View*> readouts() const {
    return {editor->_tremolo_left_rate_parameter,
            editor->_tremolo_right_rate_parameter,
            editor->_tremolo_depth_parameter,
            editor->_tremolo_left_fm_mod_frequency_parameter,
            editor->_tremolo_left_fm_mod_index_parameter,
            editor->_tremolo_right_fm_mod_frequency_parameter,
            editor->_tremolo_right_fm_mod_index_parameter};
  }

  OwnPreferences preferences;
  ManualClock clock;
  cocoa::NSAutoreleasePool pool;
  std::vector<std::string> log;
  cocoa::NSLogHook hook{[this](std::string_view line) { log.emplace_back(line); }};
  cocoa::Ref<cocoa::NSBundle> bundle =
      cocoa::make<cocoa::NSBundle>(source_path("resources"), bundle_classes());
  cocoa::EffectInstance effect{effect_parameters()};
  std::vector<Write> writes;
  cocoa::Ref<KVOndexView> editor;
};

}  // namespace ondex::test
