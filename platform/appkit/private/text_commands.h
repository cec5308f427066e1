// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "text_editing/EditedText.h"
#include "windows/window_system.h"

namespace cocoa {

/// What a key asks of a text field.
struct TextCommand {
  enum class Kind {
    none,
    insert,
    move,
    erase,
    select_all,
    cut,
    copy,
    paste,
    undo,
    redo,
    commit,
    cancel,
    next_field,
    previous_field,
  };
  Kind kind = Kind::none;
  EditedText::Unit unit = EditedText::Unit::character;               ///< of move and erase
  EditedText::Direction direction = EditedText::Direction::forward;  ///< of move and erase
  bool extend = false;                                               ///< of move
  std::string text;                                                  ///< of insert
};

/// By the key's meaning under the user's layout. The decimal key of the keypad types a '.' in every layout.
TextCommand text_command_of(uint32_t keysym, uint32_t modifiers, const std::string& characters);

}  // namespace cocoa
