// SPDX-License-Identifier: MIT
#include "appkit/private/text_commands.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

namespace cocoa {

namespace {

using Kind = TextCommand::Kind;
using Unit = EditedText::Unit;
using Direction = EditedText::Direction;

TextCommand simple(Kind kind) {
  TextCommand command;
  command.kind = kind;
  return command;
}

TextCommand step(Kind kind, Unit unit, Direction direction, bool extend = false) {
  TextCommand command;
  command.kind = kind;
  command.unit = unit;
  command.direction = direction;
  command.extend = extend;
  return command;
}

TextCommand typed(std::string text) {
  TextCommand command;
  command.kind = Kind::insert;
  command.text = std::move(text);
  return command;
}

TextCommand shortcut(uint32_t keysym, bool shift) {
  switch (keysym | 0x20U) {
    case 'a':
      return simple(Kind::select_all);
    case 'c':
      return simple(Kind::copy);
    case 'v':
      return simple(Kind::paste);
    case 'x':
      return simple(Kind::cut);
    case 'y':
      return simple(Kind::redo);
    case 'z':
      return simple(shift ? Kind::redo : Kind::undo);
    default:
      return {};
  }
}

/// Keys that mean the same with every modifier but those asked about here.
TextCommand named_key(uint32_t keysym, bool shift, bool control) {
  const Unit unit = control ? Unit::word : Unit::character;
  switch (keysym) {
    case XKB_KEY_Return:
    case XKB_KEY_KP_Enter:
    case XKB_KEY_ISO_Enter:
      return simple(Kind::commit);
    case XKB_KEY_Escape:
      return simple(Kind::cancel);
    case XKB_KEY_Tab:
      return simple(shift ? Kind::previous_field : Kind::next_field);
    case XKB_KEY_ISO_Left_Tab:
      return simple(Kind::previous_field);
    case XKB_KEY_Left:
    case XKB_KEY_KP_Left:
      return step(Kind::move, unit, Direction::backward, shift);
    case XKB_KEY_Right:
    case XKB_KEY_KP_Right:
      return step(Kind::move, unit, Direction::forward, shift);
    case XKB_KEY_Home:
    case XKB_KEY_KP_Home:
    case XKB_KEY_Up:
    case XKB_KEY_KP_Up:
      return step(Kind::move, Unit::all, Direction::backward, shift);
    case XKB_KEY_End:
    case XKB_KEY_KP_End:
    case XKB_KEY_Down:
    case XKB_KEY_KP_Down:
      return step(Kind::move, Unit::all, Direction::forward, shift);
    case XKB_KEY_BackSpace:
      return step(Kind::erase, unit, Direction::backward);
    case XKB_KEY_Delete:
    case XKB_KEY_KP_Delete:
      return shift ? simple(Kind::cut) : step(Kind::erase, unit, Direction::forward);
    case XKB_KEY_Insert:
    case XKB_KEY_KP_Insert:
      return simple(shift ? Kind::paste : control ? Kind::copy : Kind::none);
    default:
      return {};
  }
}

}  // namespace

TextCommand text_command_of(uint32_t keysym, uint32_t modifiers, const std::string& characters) {
  const bool shift = (modifiers & modifier_shift) != 0;
  const bool control = (modifiers & modifier_control) != 0;
  TextCommand named = named_key(keysym, shift, control);
  if (named.kind != Kind::none)
    return named;
  if (control)
    return shortcut(keysym, shift);
  if ((modifiers & (modifier_option | modifier_command)) != 0)
    return {};
  if (keysym == XKB_KEY_KP_Decimal || keysym == XKB_KEY_KP_Separator)
    return typed(".");
  if (keysym >= XKB_KEY_KP_0 && keysym <= XKB_KEY_KP_9)
    return typed(std::string(1, static_cast<char>('0' + (keysym - XKB_KEY_KP_0))));
  const bool prints = std::none_of(characters.begin(), characters.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
  });
  return prints && !characters.empty() ? typed(characters) : TextCommand{};
}

}  // namespace cocoa
