// SPDX-License-Identifier: MIT
#include "text_editing/EditedText.h"

#include <algorithm>
#include <utility>

#include "text_editing/private/utf8_line.h"

namespace cocoa {

void EditedText::begin(std::string_view text) {
  text_ = utf8_line(text, longest_text);
  selection_ = {text_.size(), text_.size()};
  past_.clear();
  future_.clear();
  last_change_ = Change::none;
  pressed_ = {};
}

size_t EditedText::selectionStart() const {
  return std::min(selection_.anchor, selection_.caret);
}

size_t EditedText::selectionEnd() const {
  return std::max(selection_.anchor, selection_.caret);
}

std::string_view EditedText::selectedText() const {
  return std::string_view(text_).substr(selectionStart(), selectionEnd() - selectionStart());
}

// Selection

bool EditedText::select(Selection selection) {
  last_change_ = Change::none;
  return std::exchange(selection_, selection) != selection;
}

bool EditedText::selectAll() {
  return select({0, text_.size()});
}

size_t EditedText::moved(Unit unit, Direction direction) const {
  const bool forward = direction == Direction::forward;
  if (unit == Unit::all)
    return forward ? text_.size() : 0;
  const TextBoundaries boundaries(text_);
  if (unit == Unit::word)
    return forward ? boundaries.wordEndAfter(caret()) : boundaries.wordStartBefore(caret());
  return forward ? boundaries.after(caret()) : boundaries.before(caret());
}

bool EditedText::move(Unit unit, Direction direction, bool extend) {
  if (!extend && hasSelection() && unit == Unit::character) {
    const size_t end = direction == Direction::forward ? selectionEnd() : selectionStart();
    return select({end, end});
  }
  const size_t caret = moved(unit, direction);
  return select({extend ? selection_.anchor : caret, caret});
}

// Changes

void EditedText::remember(Change change) {
  future_.clear();
  if (change != Change::none && change == last_change_)
    return;
  past_.push_back({text_, selection_});
  constexpr size_t longest_past = 200;
  if (past_.size() > longest_past)
    past_.erase(past_.begin());
}

void EditedText::replace(size_t start, size_t end, std::string_view text) {
  text_.replace(start, end - start, text);
  // Behind an accent that joined the letter before it the caret could not stand where it was put.
  const size_t caret = TextBoundaries(text_).at(start + text.size());
  selection_ = {caret, caret};
}

bool EditedText::insert(std::string_view text) {
  const size_t kept = text_.size() - (selectionEnd() - selectionStart());
  const std::string added = utf8_line(text, longest_text - std::min(kept, longest_text));
  if (added.empty() && !hasSelection())
    return false;
  const bool replaces = hasSelection();
  remember(replaces ? Change::none : Change::typing);
  replace(selectionStart(), selectionEnd(), added);
  last_change_ = Change::typing;
  return true;
}

bool EditedText::erase(Unit unit, Direction direction) {
  const bool had_selection = hasSelection();
  const size_t start = had_selection ? selectionStart() : std::min(caret(), moved(unit, direction));
  const size_t end = had_selection ? selectionEnd() : std::max(caret(), moved(unit, direction));
  if (start == end)
    return false;
  remember(had_selection ? Change::none : Change::erasing);
  replace(start, end, {});
  last_change_ = had_selection ? Change::none : Change::erasing;
  return true;
}

bool EditedText::restore(std::vector<Moment>& from, std::vector<Moment>& to) {
  if (from.empty())
    return false;
  to.push_back({std::exchange(text_, std::move(from.back().text)), selection_});
  selection_ = from.back().selection;
  from.pop_back();
  last_change_ = Change::none;
  return true;
}

bool EditedText::undo() {
  return restore(past_, future_);
}

bool EditedText::redo() {
  return restore(future_, past_);
}

// The mouse

TextBoundaries::Range EditedText::unitAt(size_t offset) const {
  if (pressed_unit_ == Unit::all)
    return {0, text_.size()};
  const TextBoundaries boundaries(text_);
  if (pressed_unit_ == Unit::word)
    return boundaries.wordAt(offset);
  const size_t place = boundaries.at(offset);
  return {place, place};
}

bool EditedText::press(size_t offset, int clicks, bool extend) {
  pressed_unit_ = clicks <= 1 ? Unit::character : clicks == 2 ? Unit::word : Unit::all;
  if (extend && clicks <= 1) {
    pressed_ = {selection_.anchor, selection_.anchor};
    return dragTo(offset);
  }
  pressed_ = unitAt(offset);
  return select({pressed_.start, pressed_.end});
}

bool EditedText::dragTo(size_t offset) {
  const TextBoundaries::Range unit = unitAt(offset);
  if (unit.start < pressed_.start)
    return select({pressed_.end, unit.start});
  return select({pressed_.start, std::max(pressed_.end, unit.end)});
}

}  // namespace cocoa
