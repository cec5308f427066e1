// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text_editing/text_boundaries.h"

namespace cocoa {

/// One line of text while a user edits it: the text, the selection in it, and what undo needs.
///
/// A selection reaches from where it began, the anchor, to the caret; both are byte offsets into valid
/// UTF-8 and stand between whole characters as a reader counts them. Knows nothing of keys, windows or
/// drawing. Every operation answers whether it changed the text or the selection.
class EditedText {
 public:
  enum class Unit { character, word, all };
  enum class Direction { backward, forward };

  EditedText() = default;

  /// Begins anew with a text: caret at its end, nothing to undo.
  void begin(std::string_view text);

  const std::string& text() const { return text_; }
  size_t caret() const { return selection_.caret; }
  size_t selectionStart() const;
  size_t selectionEnd() const;
  bool hasSelection() const { return selection_.anchor != selection_.caret; }
  std::string_view selectedText() const;

  bool selectAll();
  /// Moves the caret; with `extend` the anchor stays. Without it a selection collapses to its end in that
  /// direction, and a step of one character goes no further.
  bool move(Unit unit, Direction direction, bool extend);

  /// Puts text in the place of the selection, as far as it fits. What is typed in a row is undone at once.
  bool insert(std::string_view text);
  /// Removes the selection, or without one what lies between the caret and where it would move.
  bool erase(Unit unit, Direction direction);
  bool undo();
  bool redo();

  /// The press of a button near an offset: the caret for one click, the word around it for two, everything
  /// for three; with `extend` the selection grows or shrinks to it.
  bool press(size_t offset, int clicks, bool extend);
  /// Moving on with the button held: the selection grows by what the press selected by.
  bool dragTo(size_t offset);

 private:
  struct Selection {
    size_t anchor = 0;
    size_t caret = 0;
    bool operator==(const Selection&) const = default;
  };
  struct Moment {
    std::string text;
    Selection selection;
  };
  enum class Change { none, typing, erasing };

  static constexpr size_t longest_text = 4096;  ///< bytes

  size_t moved(Unit unit, Direction direction) const;
  bool select(Selection selection);
  void remember(Change change);
  void replace(size_t start, size_t end, std::string_view text);
  bool restore(std::vector<Moment>& from, std::vector<Moment>& to);
  TextBoundaries::Range unitAt(size_t offset) const;

  std::string text_;
  Selection selection_;
  std::vector<Moment> past_;
  std::vector<Moment> future_;
  Change last_change_ = Change::none;  ///< what the next change may be undone together with
  Unit pressed_unit_ = Unit::character;
  TextBoundaries::Range pressed_;  ///< what the press selected, which dragging never gives up
};

}  // namespace cocoa
