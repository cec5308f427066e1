// SPDX-License-Identifier: MIT
#include "checks.h"

#include <algorithm>

namespace ondex::trial {

using namespace cocoa;

void check_windows(const HeadlessWindowSystem& system, Trace& trace) {
  const auto entries = seen_windows(system, WindowKind::popup);
  const auto& windows = system.windows();
  for (const HeadlessWindow* entry : entries) {
    const bool has_parent = std::find(windows.begin(), windows.end(), entry->parent()) != windows.end();
    trace.expect(has_parent, "an entry is open without its window");
    if (!has_parent)
      return;
    const auto of_one_parent = [entry](const HeadlessWindow* other) {
      return other->parent() == entry->parent();
    };
    trace.expect(std::count_if(entries.begin(), entries.end(), of_one_parent) == 1,
                 "two entries are open over one window");
    const auto* const parent = dynamic_cast<const HeadlessWindow*>(entry->parent());
    trace.expect(parent && !parent->gone(), "an entry is open over a window that is gone");
  }
}

namespace {

/// By Escape, or by a click in the window that it lies over.
void dismiss_entry(HeadlessWindowSystem& system, HeadlessWindow& entry, User& user, bool by_click,
                   const std::function<void()>& settle) {
  const auto* const parent = dynamic_cast<const HeadlessWindow*>(entry.parent());
  // The click in its field that gives it the keys, wherever the window manager has left them.
  entry.makeKey();
  settle();
  const auto seen = seen_windows(system);
  const auto beside = std::find(seen.begin(), seen.end(), parent);
  if (by_click && beside != seen.end()) {
    user.clickBeside(**beside);
  } else if (HeadlessWindow* const with_keys = system.keyWindow()) {
    user.escape(*with_keys);
  }
  settle();
}

}  // namespace

void dismiss_panels(HeadlessWindowSystem& system, User& user, Choices& choices, Trace& trace,
                    const std::function<void()>& settle) {
  user.letGo(system);
  settle();
  const bool by_click = choices.oneOf(2);
  if (const auto entries = seen_windows(system, WindowKind::popup); !entries.empty()) {
    dismiss_entry(system, *entries.front(), user, by_click, settle);
    trace.expect(seen_windows(system, WindowKind::popup).empty(), "the entry cannot be closed");
  }
  while (!trace.failed()) {
    const auto panels = seen_windows(system, WindowKind::panel);
    if (panels.empty())
      return;
    trace.note("close the panel \"%s\"", panels.back()->title().c_str());
    panels.back()->requestClose();
    settle();
    trace.expect(seen_windows(system, WindowKind::panel).size() < panels.size(), "a panel cannot be closed");
  }
}

}  // namespace ondex::trial
