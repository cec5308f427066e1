#include "appkit/private/text_commands.h"

#include <algorithm>

namespace cocoa {

namespace {

using Kind = TextCommand::Kind;
using Unit = EditedText::Unit;
using Direction = EditedText::Direction;

/// X keysyms; those of the keypad without Num Lock beside those of the other keys.
namespace key {
constexpr uint32_t backspace = 0xff08, tab = 0xff09, left_tab = 0xfe20, enter = 0xff0d, escape = 0xff1b;
constexpr uint32_t keypad_enter = 0xff8d, iso_enter = 0xfe34;
constexpr uint32_t home = 0xff50, left = 0xff51, up = 0xff52, right = 0xff53, down = 0xff54, end = 0xff57;
constexpr uint32_t keypad_home = 0xff95, keypad_left = 0xff96, keypad_up = 0xff97, keypad_right = 0xff98;
constexpr uint32_t keypad_down = 0xff99, keypad_end = 0xff9c;
constexpr uint32_t insert = 0xff63, keypad_insert = 0xff9e, forward_delete = 0xffff, keypad_delete = 0xff9f;
constexpr uint32_t keypad_separator = 0xffac, keypad_decimal = 0xffae;
constexpr uint32_t keypad_0 = 0xffb0, keypad_9 = 0xffb9;
}  // namespace key

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
    case key::enter:
    case key::keypad_enter:
    case key::iso_enter:
      return simple(Kind::commit);
    case key::escape:
      return simple(Kind::cancel);
    case key::tab:
      return simple(shift ? Kind::previous_field : Kind::next_field);
    case key::left_tab:
      return simple(Kind::previous_field);
    case key::left:
    case key::keypad_left:
      return step(Kind::move, unit, Direction::backward, shift);
    case key::right:
    case key::keypad_right:
      return step(Kind::move, unit, Direction::forward, shift);
    case key::home:
    case key::keypad_home:
    case key::up:
    case key::keypad_up:
      return step(Kind::move, Unit::all, Direction::backward, shift);
    case key::end:
    case key::keypad_end:
    case key::down:
    case key::keypad_down:
      return step(Kind::move, Unit::all, Direction::forward, shift);
    case key::backspace:
      return step(Kind::erase, unit, Direction::backward);
    case key::forward_delete:
    case key::keypad_delete:
      return shift ? simple(Kind::cut) : step(Kind::erase, unit, Direction::forward);
    case key::insert:
    case key::keypad_insert:
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
  if (keysym == key::keypad_decimal || keysym == key::keypad_separator)
    return typed(".");
  if (keysym >= key::keypad_0 && keysym <= key::keypad_9)
    return typed(std::string(1, static_cast<char>('0' + (keysym - key::keypad_0))));
  const bool prints = std::none_of(characters.begin(), characters.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
  });
  return prints && !characters.empty() ? typed(characters) : TextCommand{};
}

}  // namespace cocoa
