// SPDX-License-Identifier: MIT
#include "editor_trial.h"

#include <limits>

#include "appkit/NSApplication.h"
#include "build_paths.h"
#include "editor/parameter_table.h"
#include "factory/KVOndexViewFactory.h"
#include "factory/bundle_classes.h"
#include "foundation/CFPreferences.h"
#include "hosting/audio_unit_host.h"
#include "seams.h"

namespace ondex::trial {

using namespace cocoa;

namespace {

constexpr int most_steps = 400;
}  // namespace

EditorTrial::EditorTrial(Choices& choices, Trace& trace)
    : choices_(choices),
      trace_(trace),
      log_([this](std::string_view line) {
        if (!may_complain_)
          trace_.fault("a line in the log: %.*s", static_cast<int>(line.size()), line.data());
      }),
      bundle_(make<NSBundle>(test::source_path("resources"), bundle_classes())),
      system_(machine_clock(), display_scale),
      scope_(std::make_unique<CFRunLoopScope>(loop_)),
      dispatcher_(loop_.addPoller([this] { return system_.dispatch(); })),
      effect_(std::make_unique<EffectInstance>(effect_parameters())),
      user_(choices, trace) {
  NSApplicationLoad();
  HeadlessWindowSystem::clearPasteboards();
  // What an earlier trial has left in memory is dropped: nothing is pending.
  CFPreferencesSynchronize(kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                           kCFPreferencesCurrentHost);
  effect_->onWrite([this](unsigned id, float value) { wrote(id, value); });
  const NSAutoreleasePool opening;
  openEditor(editors_[0]);
  user_.know(places_of(*editors_[0].view));
  openWindow(windows_[0]);
  put(editors_[0], windows_[0].get());
}

EditorTrial::~EditorTrial() {
  {
    const NSAutoreleasePool leaving;
    editors_ = {};
    windows_ = {};
  }
  effect_ = nullptr;
  dispatcher_ = nullptr;
  scope_ = nullptr;
}

void EditorTrial::run() {
  settleValues();
  for (int steps = 0; steps < most_steps && choices_.any() && !trace_.failed(); ++steps)
    step();
  if (!trace_.failed())
    end();
}

void EditorTrial::step() {
  {
    const NSAutoreleasePool pool;
    switch (choices_.below(8)) {
      case 0:
      case 1:
      case 2:
      case 3:
        if (seen_windows(system_).empty() && choices_.oneOf(2)) {
          showSomething();
          break;
        }
        user_acted_ = true;
        user_.act(system_);
        break;
      case 4:
      case 5:
        pass();
        break;
      case 6: {
        const double gap = std::array{0.1, 0.7, 3.0}.at(choices_.below(3));
        trace_.note("%g s pass", gap);
        machine_clock().advance(gap);
        break;
      }
      default:
        actAsHost();
    }
  }
  checkRanges();
}

// The host

void EditorTrial::openEditor(Editor& editor) {
  const auto factory = make<KVOndexViewFactory>();
  editor.view = dynamic_cast<KVOndexView*>(factory->uiViewForAudioUnit_withSize(effect_->audio_unit(), {}));
  trace_.expect(static_cast<bool>(editor.view), "no editor is made");
  editor.box = editor.view->_effect_box.get();
  opened_.emplace_back(editor.view.get());
  watchTree(editor.view.get());
  watchTree(editor.view->_text_entry_popup_view);
}

void EditorTrial::openWindow(Ref<NSWindow>& window) {
  window = make<NSWindow>(NSRect{{120, 120}, {860, 352}}, NSTitledWindowMask | NSClosableWindowMask);
  window->setWindowSystem(&system_);
  window->makeKeyAndOrderFront(nullptr);
  watch("a window", window.get());
}

void EditorTrial::put(Editor& editor, NSWindow* window) {
  if (!window)
    return;
  if (choices_.oneOf(3)) {
    window->contentView()->addSubview(editor.view.get());
  } else {
    window->setContentView(editor.view.get());
  }
}

void EditorTrial::takeOut(Editor& editor) {
  NSWindow* const window = editor.view->window();
  if (window && window->contentView() == editor.view.get()) {
    window->setContentView(make<NSView>(editor.view->bounds()).get());
  } else {
    editor.view->removeFromSuperview();
  }
}

void EditorTrial::actAsHost() {
  switch (choices_.below(12)) {
    case 0:
    case 1:
    case 2:
      return changeEditor(editors_[0]);
    case 3:
      return changeEditor(editors_[1]);
    case 4:
    case 5:
    case 6:
      return changeWindow(windows_[0]);
    case 7:
      return changeWindow(windows_[1]);
    case 8:
      armed_ = 1 + choices_.below(2);
      return trace_.note("the host will act from inside the next %u writes", armed_);
    case 9:
      return changeSurroundings();
    default:
      return setParameter();
  }
}

/// Without a window the user can do nothing.
void EditorTrial::showSomething() {
  if (!windows_[0])
    openWindow(windows_[0]);
  if (!editors_[0].view && effect_)
    openEditor(editors_[0]);
  trace_.note("the host shows window 0");
  if (editors_[0].view && editors_[0].view->window() != windows_[0].get())
    put(editors_[0], windows_[0].get());
  windows_[0]->makeKeyAndOrderFront(nullptr);
  if (auto* const shown = dynamic_cast<HeadlessWindow*>(windows_[0]->platformWindow()))
    shown->setObscured(false);
}

void EditorTrial::setParameter() {
  if (!effect_)
    return;
  const unsigned id = choices_.below(parameter_table.size());
  constexpr std::array odd = {std::numeric_limits<float>::quiet_NaN(), -1.0F, 1e30F,
                              -std::numeric_limits<float>::infinity()};
  const float value = choices_.oneOf(4) ? odd.at(choices_.below(odd.size()))
                                        : static_cast<float>(choices_.share() * parameter_table[id].maximum);
  trace_.note("the host sets %u to %g", id, static_cast<double>(value));
  effect_->setFromHost(id, value);
}

void EditorTrial::changeEditor(Editor& editor) {
  if (!editor.view) {
    if (!effect_)
      return;
    trace_.note("the host opens an editor");
    openEditor(editor);
    return put(editor, windows_[choices_.below(2)].get());
  }
  const auto number = static_cast<unsigned>(&editor - editors_.data());
  switch (choices_.below(6)) {
    case 0:
    case 1:
      trace_.note("the host takes editor %u out of its window", number);
      return takeOut(editor);
    case 2:
      trace_.note("the host moves editor %u into a window", number);
      return put(editor, windows_[choices_.below(2)].get());
    case 3:
    case 4:
      trace_.note("the host %s the box of editor %u", editor.box->superview() ? "takes out" : "puts back",
                  number);
      if (editor.box->superview())
        return editor.box->removeFromSuperview();
      return editor.view->addSubview(editor.box.get());
    default:
      trace_.note("the host gives up editor %u", number);
      if (choices_.oneOf(2))
        takeOut(editor);
      editor = {};
  }
}

void EditorTrial::changeWindow(Ref<NSWindow>& window) {
  const auto number = static_cast<unsigned>(&window - windows_.data());
  if (!window) {
    trace_.note("the host makes window %u", number);
    return openWindow(window);
  }
  const Ref<NSWindow> kept(window);
  auto* const shown = dynamic_cast<HeadlessWindow*>(window->platformWindow());
  switch (choices_.below(12)) {
    case 0:
      trace_.note("the host orders window %u out", number);
      return window->orderOut(nullptr);
    case 1:
      trace_.note("the host orders window %u front", number);
      return window->orderFront(nullptr);
    case 2:
      trace_.note("the host makes window %u key", number);
      return window->makeKeyAndOrderFront(nullptr);
    case 3:
      trace_.note("the host closes window %u", number);
      return window->close();
    case 4:
      trace_.note("the host gives up window %u", number);
      window = nullptr;
      return;
    case 5:
      trace_.note("the host makes window %u another size", number);
      return window->setContentSize({static_cast<CGFloat>(400 + 600 * choices_.share()), 352});
    default:
      break;
  }
  if (!shown)
    return;
  switch (choices_.below(6)) {
    case 0:
      trace_.note("window %u is destroyed from outside", number);
      return shown->destroyFromOutside();
    case 1:
      trace_.note("window %u is covered or uncovered", number);
      return shown->setObscured(shown->viewable());
    case 2:
      trace_.note("window %u is scaled", number);
      return shown->setScale(display_scale * (1 + choices_.share()));
    case 3:
      trace_.note("window %u is moved", number);
      return shown->move({static_cast<CGFloat>(500 * choices_.share()), 50});
    case 4:
      trace_.note("the pixels of window %u are lost", number);
      return shown->losePixels();
    default:
      trace_.note("window %u is resized", number);
      return shown->resize({static_cast<CGFloat>(900 * choices_.share()), 200});
  }
}

void EditorTrial::changeSurroundings() {
  switch (choices_.below(8)) {
    case 0:
      trace_.note("the effect goes");
      effect_ = nullptr;
      break;
    case 1:
      trace_.note("the connection is lost");
      may_complain_ = true;
      return system_.loseConnection();
    case 2:
      trace_.note("the window system refuses windows");
      may_complain_ = true;
      return system_.refuseWindows(true);
    default:
      return system_.refuseWindows(false);
  }
}

void EditorTrial::wrote(unsigned id, float value) {
  trace_.note("  it writes %u = %g", id, static_cast<double>(value));
  trace_.expect(user_acted_, "a parameter is written without a gesture");
  trace_.expect(shown_for(value, id) == value, "what is written is out of range");
  if (armed_ == 0 || answering_)
    return;
  --armed_;
  answering_ = true;
  actAsHost();
  answering_ = false;
}

}  // namespace ondex::trial
