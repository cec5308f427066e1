// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "text_editing/EditedText.h"

namespace cocoa {
namespace {

using Unit = EditedText::Unit;
using Direction = EditedText::Direction;
constexpr Direction back = Direction::backward;
constexpr Direction forth = Direction::forward;

class Editing : public testing::Test {
 protected:
  explicit Editing(std::string_view text = "12.5 Hz") { text_.begin(text); }
  /// The text with the selection in brackets, or the caret as a bar.
  std::string shown() const {
    std::string shown = text_.text();
    if (text_.hasSelection()) {
      shown.insert(text_.selectionEnd(), "]");
      return shown.insert(text_.selectionStart(), "[");
    }
    return shown.insert(text_.caret(), "|");
  }
  void home() { text_.move(Unit::all, back, false); }
  EditedText text_;
};

TEST_F(Editing, BeginsWithTheCaretAtTheEnd) {
  EXPECT_EQ(shown(), "12.5 Hz|");
  EXPECT_FALSE(text_.undo());
}

TEST_F(Editing, TypingReplacesTheSelection) {
  text_.selectAll();
  EXPECT_TRUE(text_.insert("7"));
  EXPECT_TRUE(text_.insert("8"));
  EXPECT_EQ(shown(), "78|");
}

TEST_F(Editing, StepsStopAtTheEnds) {
  EXPECT_FALSE(text_.move(Unit::character, forth, false));
  home();
  EXPECT_EQ(shown(), "|12.5 Hz");
  EXPECT_FALSE(text_.move(Unit::character, back, false));
  EXPECT_TRUE(text_.move(Unit::character, forth, false));
  EXPECT_EQ(shown(), "1|2.5 Hz");
}

TEST_F(Editing, StepsByWords) {
  text_.move(Unit::word, back, false);
  EXPECT_EQ(shown(), "12.5 |Hz");
  text_.move(Unit::word, back, false);
  EXPECT_EQ(shown(), "|12.5 Hz");
  text_.move(Unit::word, forth, false);
  EXPECT_EQ(shown(), "12.5| Hz");
}

TEST_F(Editing, ExtendingKeepsTheAnchorAndMayCrossIt) {
  text_.move(Unit::word, back, false);
  text_.move(Unit::character, back, true);
  EXPECT_EQ(shown(), "12.5[ ]Hz");
  text_.move(Unit::word, forth, true);
  EXPECT_EQ(shown(), "12.5 [Hz]");
  EXPECT_EQ(text_.selectedText(), "Hz");
}

TEST_F(Editing, AStepCollapsesASelectionToItsEnd) {
  text_.selectAll();
  text_.move(Unit::character, back, false);
  EXPECT_EQ(shown(), "|12.5 Hz");
  text_.selectAll();
  text_.move(Unit::character, forth, false);
  EXPECT_EQ(shown(), "12.5 Hz|");
}

TEST_F(Editing, ErasesCharactersWordsAndSelections) {
  text_.erase(Unit::character, back);
  EXPECT_EQ(shown(), "12.5 H|");
  text_.erase(Unit::word, back);
  EXPECT_EQ(shown(), "12.5 |");
  home();
  text_.erase(Unit::character, forth);
  EXPECT_EQ(shown(), "|2.5 ");
  text_.erase(Unit::word, forth);
  EXPECT_EQ(shown(), "| ");
  text_.selectAll();
  text_.erase(Unit::character, back);
  EXPECT_EQ(shown(), "|");
  EXPECT_FALSE(text_.erase(Unit::character, back));
  EXPECT_FALSE(text_.erase(Unit::word, forth));
}

TEST_F(Editing, ErasingTakesALetterWithItsAccents) {
  text_.begin("ae\u0301");
  text_.erase(Unit::character, back);
  EXPECT_EQ(shown(), "a|");
}

TEST_F(Editing, TheCaretNeverStandsInsideACharacter) {
  text_.begin("e");
  text_.insert("\u0301");
  EXPECT_EQ(text_.caret(), 3U);
  home();
  text_.insert("x");
  EXPECT_EQ(text_.caret(), 1U);
}

TEST_F(Editing, TypingInARowIsUndoneAtOnceAndRedone) {
  text_.selectAll();
  for (const char* key : {"4", "4", "0"})
    text_.insert(key);
  EXPECT_TRUE(text_.undo());
  EXPECT_EQ(shown(), "[12.5 Hz]");
  EXPECT_FALSE(text_.undo());
  EXPECT_TRUE(text_.redo());
  EXPECT_EQ(shown(), "440|");
  EXPECT_FALSE(text_.redo());
}

TEST_F(Editing, MovingEndsARowOfTyping) {
  text_.begin("");
  text_.insert("1");
  text_.move(Unit::all, back, false);
  text_.insert("2");
  EXPECT_EQ(shown(), "2|1");
  text_.undo();
  EXPECT_EQ(shown(), "|1");
  text_.undo();
  EXPECT_EQ(shown(), "|");
}

TEST_F(Editing, ErasingIsUndoneApartFromTyping) {
  text_.begin("12");
  text_.insert("3");
  text_.erase(Unit::character, back);
  text_.erase(Unit::character, back);
  text_.undo();
  EXPECT_EQ(shown(), "123|");
  text_.undo();
  EXPECT_EQ(shown(), "12|");
}

TEST_F(Editing, ANewChangeForgetsWhatCouldBeRedone) {
  text_.insert("1");
  text_.undo();
  text_.insert("2");
  EXPECT_FALSE(text_.redo());
  EXPECT_EQ(shown(), "12.5 Hz2|");
}

TEST_F(Editing, BeginningAnewForgetsThePast) {
  text_.insert("1");
  text_.begin("new");
  EXPECT_FALSE(text_.undo());
  EXPECT_FALSE(text_.redo());
  EXPECT_EQ(shown(), "new|");
}

TEST_F(Editing, InsertingNothingChangesNothingButReplacesASelection) {
  EXPECT_FALSE(text_.insert(""));
  EXPECT_FALSE(text_.insert("\n"));
  EXPECT_FALSE(text_.undo());
  text_.selectAll();
  EXPECT_TRUE(text_.insert(""));
  EXPECT_EQ(shown(), "|");
}

TEST_F(Editing, TakesNoMoreThanAFieldCanHold) {
  text_.begin("");
  text_.insert(std::string(5000, '1'));
  EXPECT_EQ(text_.text().size(), 4096U);
  EXPECT_FALSE(text_.insert("2"));
  text_.selectAll();
  EXPECT_TRUE(text_.insert("3"));
  EXPECT_EQ(shown(), "3|");
}

}  // namespace
}  // namespace cocoa
