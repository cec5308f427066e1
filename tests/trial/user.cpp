// SPDX-License-Identifier: MIT
#include "user.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>
#include <iterator>

#include "seams.h"

namespace ondex::trial {

using namespace cocoa;

namespace {

constexpr uint32_t key_return = XKB_KEY_Return;
constexpr uint32_t key_escape = XKB_KEY_Escape;

struct Key {
  const char* name;
  uint32_t keysym;
  const char* characters;
  uint32_t modifiers;
};
constexpr Key other_keys[] = {
    {"Tab", XKB_KEY_Tab, "\t", 0},
    {"Shift+Tab", XKB_KEY_ISO_Left_Tab, "", modifier_shift},
    {"BackSpace", XKB_KEY_BackSpace, "\b", 0},
    {"Delete", XKB_KEY_Delete, "", 0},
    {"Left", XKB_KEY_Left, "", 0},
    {"Shift+Right", XKB_KEY_Right, "", modifier_shift},
    {"Home", XKB_KEY_Home, "", 0},
    {"Ctrl+A", 'a', "", modifier_control},
    {"Ctrl+C", 'c', "", modifier_control},
    {"Ctrl+X", 'x', "", modifier_control},
    {"Ctrl+V", 'v', "", modifier_control},
    {"Ctrl+Z", 'z', "", modifier_control},
};
constexpr const char* texts[] = {"1",       "0,5", "19.25", "-3", "1e9", "7..", "00000000000000001",
                                 "#a0B1c2", "nan", " "};

const char* name_of(WindowKind kind) {
  switch (kind) {
    case WindowKind::popup:
      return "entry";
    case WindowKind::panel:
      return "panel";
    default:
      return "editor";
  }
}

NSPoint in_window(const HeadlessWindow& window, double x, double y) {
  const NSSize size = window.frame().size;
  return {static_cast<CGFloat>(x * static_cast<double>(size.width)),
          static_cast<CGFloat>(y * static_cast<double>(size.height))};
}

}  // namespace

std::vector<Place> places_of(const KVOndexView& editor) {
  const NSSize size = editor.bounds().size;
  std::vector<Place> places;
  const auto add = [&](const char* name, const NSView* view) {
    const NSRect bounds = view->bounds();
    const NSPoint middle =
        view->convertPoint_toView({bounds.size.width / 2, bounds.size.height / 2}, &editor);
    places.push_back(
        {name, static_cast<double>(middle.x / size.width), static_cast<double>(middle.y / size.height)});
  };
  add("left rate", editor._tremolo_left_rate_parameter);
  add("right rate", editor._tremolo_right_rate_parameter);
  add("depth", editor._tremolo_depth_parameter);
  add("left factor", editor._tremolo_left_fm_mod_frequency_parameter);
  add("left index", editor._tremolo_left_fm_mod_index_parameter);
  add("right factor", editor._tremolo_right_fm_mod_frequency_parameter);
  add("right index", editor._tremolo_right_fm_mod_index_parameter);
  add("knob", editor._knob);
  add("title", editor._main_title);
  places.push_back({"nothing", 0.01, 0.02});
  return places;
}

std::vector<HeadlessWindow*> seen_windows(const HeadlessWindowSystem& system) {
  std::vector<HeadlessWindow*> seen;
  std::copy_if(system.windows().begin(), system.windows().end(), std::back_inserter(seen),
               [](const HeadlessWindow* window) { return window->viewable(); });
  return seen;
}

std::vector<HeadlessWindow*> seen_windows(const HeadlessWindowSystem& system, WindowKind kind) {
  std::vector<HeadlessWindow*> seen = seen_windows(system);
  std::erase_if(seen, [kind](const HeadlessWindow* window) { return window->kind() != kind; });
  return seen;
}

void User::act(HeadlessWindowSystem& system) {
  const std::vector<HeadlessWindow*> seen = seen_windows(system);
  if (seen.empty())
    return;
  std::vector<HeadlessWindow*> editors = seen;
  std::erase_if(editors, [](const HeadlessWindow* window) {
    return window->kind() == WindowKind::popup || window->kind() == WindowKind::panel;
  });
  HeadlessWindow& any = *seen[choices_.below(static_cast<unsigned>(seen.size()))];
  HeadlessWindow& editor =
      editors.empty() ? any : *editors[choices_.below(static_cast<unsigned>(editors.size()))];
  HeadlessWindow* const with_keys = system.keyWindow();
  switch (choices_.below(16)) {
    case 0:
    case 1:
    case 2:
      return doubleClick(editor);
    case 3: {
      const Place& place = choosePlace();
      trace_.note("click %s", place.name);
      return click(editor, in_window(editor, place.x, place.y));
    }
    case 4:
    case 5:
      return choices_.oneOf(3) ? dragIn(any, chooseWhere(any)) : drag(editor);
    case 6:
      return letGo(system);
    case 7:
      return wheel(editor);
    case 8:
    case 9: {
      const NSPoint where = chooseWhere(any);
      trace_.note("click at %g, %g in the %s", static_cast<double>(where.x), static_cast<double>(where.y),
                  name_of(any.kind()));
      return click(any, where);
    }
    case 10:
      if (with_keys)
        type(*with_keys);
      return;
    case 11:
    case 12:
    case 13:
      if (with_keys)
        key(*with_keys);
      return;
    default:
      return actOnWindows(system, any);
  }
}

const Place& User::choosePlace() {
  // Much of what can go wrong goes wrong at the same place twice.
  if (choices_.oneOf(2))
    favourite_ = choices_.below(static_cast<unsigned>(places_.size()));
  return places_[favourite_];
}

NSPoint User::chooseWhere(const HeadlessWindow& window) {
  const double x = choices_.share();
  const double y = choices_.share();
  return in_window(window, x, y);
}

void User::click(HeadlessWindow& window, NSPoint where) {
  window.press(where);
  window.release();
  machine_clock().advance(0.05);
}

void User::doubleClick(HeadlessWindow& window) {
  const Place& place = choosePlace();
  trace_.note("double-click %s", place.name);
  const NSPoint where = in_window(window, place.x, place.y);
  click(window, where);
  click(window, where);
}

void User::drag(HeadlessWindow& window) {
  if (holds_)
    return dragIn(window, chooseWhere(window));
  const Place& place = choosePlace();
  trace_.note("at %s:", place.name);
  dragIn(window, in_window(window, place.x, place.y));
}

/// Presses, or moves on with what is pressed.
void User::dragIn(HeadlessWindow& window, NSPoint where) {
  trace_.note("%s %g, %g in the %s", holds_ ? "drag to" : "press", static_cast<double>(where.x),
              static_cast<double>(where.y), name_of(window.kind()));
  if (std::exchange(holds_, true)) {
    window.drag_to(where);
  } else {
    window.press(where);
  }
}

void User::letGo(HeadlessWindowSystem& system) {
  if (!std::exchange(holds_, false))
    return;
  trace_.note("let go");
  // Whoever got no press knows of no release.
  std::vector<HeadlessWindow*> windows = system.windows();
  for (HeadlessWindow* window : windows)
    window->release();
}

void User::wheel(HeadlessWindow& window) {
  const Place& place = choosePlace();
  const double turn = choices_.share() * 8 - 4;
  trace_.note("turn the wheel by %g over %s", turn, place.name);
  window.move_to(in_window(window, place.x, place.y));
  window.scroll(0, turn);
}

void User::type(HeadlessWindow& window) {
  const char* const text = texts[choices_.below(std::size(texts))];
  trace_.note("type \"%s\" in the %s", text, name_of(window.kind()));
  window.type(text);
}

void User::key(HeadlessWindow& window) {
  Key key = {"Return", key_return, "\r", 0};
  const unsigned choice = choices_.below(4);
  if (choice == 2) {
    key = {"Escape", key_escape, "\x1b", 0};
  } else if (choice == 3) {
    key = other_keys[choices_.below(std::size(other_keys))];
  }
  trace_.note("%s in the %s", key.name, name_of(window.kind()));
  window.key_down(key.keysym, key.characters, key.modifiers);
  window.key_up(key.keysym, key.characters, key.modifiers);
}

void User::actOnWindows(HeadlessWindowSystem& system, HeadlessWindow& window) {
  switch (choices_.below(4)) {
    case 0:
      trace_.note("close the %s", name_of(window.kind()));
      return window.requestClose();
    case 1:
      trace_.note("go to another program");
      return system.loseKey();
    case 2:
      trace_.note("go to the %s", name_of(window.kind()));
      return window.makeKey();
    default:
      trace_.note("copy a number elsewhere");
      return system.offerText(Pasteboard::copied, texts[choices_.below(std::size(texts))]);
  }
}

void User::escape(HeadlessWindow& entry) {
  trace_.note("Escape to the entry");
  entry.key_down(key_escape, "\x1b");
}

void User::clickBeside(HeadlessWindow& window) {
  trace_.note("click beside the entry");
  click(window, in_window(window, places_.back().x, places_.back().y));
}

}  // namespace ondex::trial
