// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <functional>

#include "checks.h"
#include "editor/parameter_table.h"
#include "editor_trial.h"
#include "seams.h"

namespace ondex::trial {

using namespace cocoa;

namespace {
/// The editor collects changes for 0.05 s.
constexpr double until_told = 0.06;
constexpr int most_turns = 30;

/// The panel goes with the readouts, when these are taken out and given up.
NSWindow* entry_window(const KVOndexView& editor) {
  const NSView* const panel = editor._text_entry_popup_view;
  return panel ? panel->window() : nullptr;
}

}  // namespace

std::array<KV_Ondex_Parameter_Control_View*, 7> readouts_of(const KVOndexView& editor) {
  return {editor._tremolo_left_rate_parameter,
          editor._tremolo_right_rate_parameter,
          editor._tremolo_depth_parameter,
          editor._tremolo_left_fm_mod_frequency_parameter,
          editor._tremolo_left_fm_mod_index_parameter,
          editor._tremolo_right_fm_mod_frequency_parameter,
          editor._tremolo_right_fm_mod_index_parameter};
}

float shown_for(float value, unsigned parameter) {
  const auto minimum = static_cast<float>(parameter_table.at(parameter).minimum);
  const auto maximum = static_cast<float>(parameter_table.at(parameter).maximum);
  if (!(value >= minimum))
    return minimum;
  return value > maximum ? maximum : value;
}

// Time

void EditorTrial::pass() {
  switch (choices_.below(4)) {
    case 0:
      trace_.note("one turn");
      return turn();
    case 1:
      trace_.note("turns after 0.06 s");
      return settleValues();
    default:
      trace_.note("turns");
      return settle();
  }
}

void EditorTrial::turn() {
  CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
}

void EditorTrial::settle() {
  int turns = 0;
  do {
    turn();
  } while (system_.hasQueued() && ++turns < most_turns);
  trace_.expect(!system_.hasQueued(), "the windows never come to rest");
  // What the pool of the last turn has let go of may have told the window system.
  user_acted_ = false;
  checkEntries();
  watchPanels();
}

void EditorTrial::settleValues() {
  settle();
  machine_clock().advance(until_told);
  settle();
  for (const Editor& editor : editors_) {
    if (editor.view)
      checkValues(editor);
  }
}

// What must hold

/// An entry belongs to a readout that is in the window which it lies over. A window may keep an editor that
/// the host has given up.
void EditorTrial::checkEntries() {
  check_windows(system_, trace_);
  for (const HeadlessWindow* entry : seen_windows(system_, WindowKind::popup)) {
    const bool is_owned = std::any_of(opened_.begin(), opened_.end(), [entry](const auto& opened) {
      const KVOndexView* const editor = opened.get();
      const NSWindow* const panel = editor ? entry_window(*editor) : nullptr;
      if (!panel || panel->platformWindow() != entry || !panel->parentWindow())
        return false;
      const auto readouts = readouts_of(*editor);
      return std::any_of(readouts.begin(), readouts.end(), [panel](KV_Ondex_Parameter_Control_View* readout) {
        return readout && panel->delegate() == readout && readout->window() == panel->parentWindow();
      });
    });
    trace_.expect(is_owned, "an entry is open that no readout in its window owns");
  }
}

void EditorTrial::checkRanges() {
  for (const Editor& editor : editors_) {
    if (!editor.view)
      continue;
    for (const KV_Ondex_Parameter_Control_View* readout : readouts_of(*editor.view)) {
      const double value = readout->current_value();
      trace_.expect(value >= readout->minimum_value() && value <= readout->maximum_value(),
                    "a readout is out of its range");
    }
  }
}

void EditorTrial::checkValues(const Editor& editor) {
  if (!effect_)
    return;
  unsigned id = 0;
  for (const KV_Ondex_Parameter_Control_View* readout : readouts_of(*editor.view)) {
    const auto shown = static_cast<float>(readout->current_value());
    const float expected = shown_for(effect_->value(id), id);
    if (shown != expected) {
      trace_.fault("readout %u shows %.9g and not %.9g", id, static_cast<double>(shown),
                   static_cast<double>(expected));
    }
    if (readout == editor.view->_current_parameter_view) {
      const double pointed = editor.view->_knob->current_value();
      trace_.expect(std::abs(pointed - readout->current_value()) < 1e-6,
                    "the knob is not at the readout's value");
    }
    ++id;
  }
}

// The end

void EditorTrial::end() {
  armed_ = 0;
  const auto rest = [this] {
    const NSAutoreleasePool pool;
    settle();
  };
  rest();
  user_acted_ = true;
  if (choices_.oneOf(2)) {
    dismiss_panels(system_, user_, choices_, trace_, [&] {
      rest();
      user_acted_ = true;
    });
  }
  if (trace_.failed())
    return;
  // Given up in any order, at once or with the loop turning in between.
  std::vector<std::pair<const char*, std::function<void()>>> ends = {
      {"the effect goes", [this] { effect_ = nullptr; }},
      {"editor 0 is given up", [this] { editors_[0] = {}; }},
      {"editor 1 is given up", [this] { editors_[1] = {}; }},
      {"window 0 is given up", [this] { windows_[0] = nullptr; }},
      {"window 1 is given up", [this] { windows_[1] = nullptr; }},
      {"window 0 is ordered out",
       [this] {
         if (windows_[0])
           windows_[0]->orderOut(nullptr);
       }},
      {"editor 0 is taken out",
       [this] {
         if (editors_[0].view)
           takeOut(editors_[0]);
       }},
  };
  while (!ends.empty()) {
    const NSAutoreleasePool pool;
    const auto chosen = ends.begin() + choices_.below(static_cast<unsigned>(ends.size()));
    trace_.note("%s", chosen->first);
    chosen->second();
    ends.erase(chosen);
    if (choices_.oneOf(2))
      turn();
  }
  rest();
  trace_.expect(system_.windows().empty(), "a window of the window system is left");
  for (const auto& [name, object] : watched_) {
    if (object)
      trace_.fault("%s is left", name);
  }
}

void EditorTrial::watch(const char* name, NSObject* object) {
  const auto is_it = [object](const auto& each) { return each.second.get() == object; };
  if (std::any_of(watched_.rbegin(), watched_.rend(), is_it))
    return;
  watched_.emplace_back(name, WeakRef<NSObject>(object));
}

void EditorTrial::watchTree(NSView* view) {
  watch(view->isa().name.data(), view);
  for (const Ref<NSView>& subview : view->subviews())
    watchTree(subview.get());
}

void EditorTrial::watchPanels() {
  for (const auto& opened : opened_) {
    const KVOndexView* const editor = opened.get();
    if (!editor)
      continue;
    if (NSWindow* const panel = entry_window(*editor))
      watch("an entry window", panel);
    if (KV_Ondex_Preference_Controller* const controller = editor->_preferences_controller.get())
      watch("a preference controller", controller);
  }
}

}  // namespace ondex::trial
