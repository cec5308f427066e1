// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "appkit/NSWindow.h"
#include "audio_unit/effect_instance.h"
#include "editor/KVOndexView.h"
#include "foundation/CFRunLoop.h"
#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"
#include "temporary_folder.h"
#include "user.h"
#include "windows/headless.h"

namespace ondex::trial {

/// An Audio Unit host with one effect, two windows and two editors, which it puts into the windows, takes out
/// of them and gives up as it likes, also from inside a write of the editor's.
class EditorTrial {
 public:
  EditorTrial(Choices& choices, Trace& trace);
  ~EditorTrial();
  EditorTrial(const EditorTrial&) = delete;
  EditorTrial& operator=(const EditorTrial&) = delete;

  void run();

 private:
  struct Editor {
    cocoa::Ref<KVOndexView> view;
    cocoa::Ref<cocoa::NSBox> box;  ///< the view's, also when it has been taken out
  };

  void openEditor(Editor& editor);
  void openWindow(cocoa::Ref<cocoa::NSWindow>& window);
  void put(Editor& editor, cocoa::NSWindow* window);
  void takeOut(Editor& editor);
  void showSomething();

  void step();
  void actAsHost();
  void changeEditor(Editor& editor);
  void changeWindow(cocoa::Ref<cocoa::NSWindow>& window);
  void changeSurroundings();
  void setParameter();
  void wrote(unsigned id, float value);

  void pass();
  void turn();
  void settle();
  void settleValues();
  void checkEntries();
  void checkValues(const Editor& editor);
  void checkRanges();
  void end();

  void watch(const char* name, cocoa::NSObject* object);
  void watchTree(cocoa::NSView* view);
  void watchPanels();

  Choices& choices_;
  Trace& trace_;
  test::OwnPreferences preferences_;
  cocoa::NSAutoreleasePool pool_;
  cocoa::NSLogHook log_;
  cocoa::Ref<cocoa::NSBundle> bundle_;
  cocoa::HeadlessWindowSystem system_;
  cocoa::CFRunLoop loop_;
  std::unique_ptr<cocoa::CFRunLoopScope> scope_;
  cocoa::CFRunLoop::AttachmentRef dispatcher_;
  std::unique_ptr<cocoa::EffectInstance> effect_;
  User user_;
  std::array<Editor, 2> editors_;
  std::vector<cocoa::WeakRef<KVOndexView>> opened_;
  std::array<cocoa::Ref<cocoa::NSWindow>, 2> windows_;
  std::vector<std::pair<const char*, cocoa::WeakRef<cocoa::NSObject>>> watched_;
  unsigned armed_ = 0;  ///< so many of the next writes are answered with something rash
  bool answering_ = false;
  bool user_acted_ = false;  ///< and what was done may still wait somewhere
  bool may_complain_ = false;
};

/// By parameter number; those that have gone are null.
std::array<KV_Ondex_Parameter_Control_View*, 7> readouts_of(const KVOndexView& editor);
/// What a readout shows for a value of the effect's.
float shown_for(float value, unsigned parameter);

}  // namespace ondex::trial
