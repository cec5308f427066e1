// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "text_editing/EditedText.h"

namespace cocoa {
namespace {

class Pressing : public testing::Test {
 protected:
  Pressing() { text_.begin("left 12.5 right"); }
  EditedText text_;
};

TEST_F(Pressing, OneClickPutsTheCaretAndDraggingSelects) {
  text_.press(2, 1, false);
  EXPECT_FALSE(text_.hasSelection());
  EXPECT_EQ(text_.caret(), 2U);
  text_.dragTo(6);
  EXPECT_EQ(text_.selectedText(), "ft 1");
  EXPECT_EQ(text_.caret(), 6U);
  text_.dragTo(0);
  EXPECT_EQ(text_.selectedText(), "le");
  EXPECT_EQ(text_.caret(), 0U);
}

TEST_F(Pressing, TwoClicksSelectTheWordAndDraggingGrowsByWords) {
  text_.press(6, 2, false);
  EXPECT_EQ(text_.selectedText(), "12.5");
  text_.dragTo(12);
  EXPECT_EQ(text_.selectedText(), "12.5 right");
  text_.dragTo(1);
  EXPECT_EQ(text_.selectedText(), "left 12.5");
  EXPECT_EQ(text_.caret(), 0U);
  text_.dragTo(7);
  EXPECT_EQ(text_.selectedText(), "12.5") << "the word that was pressed stays";
}

TEST_F(Pressing, ThreeClicksSelectEverything) {
  text_.press(6, 3, false);
  EXPECT_EQ(text_.selectedText(), "left 12.5 right");
  text_.dragTo(0);
  EXPECT_EQ(text_.selectedText(), "left 12.5 right");
}

TEST_F(Pressing, ShiftMovesTheEndOfTheSelection) {
  text_.press(5, 1, false);
  text_.press(9, 1, true);
  EXPECT_EQ(text_.selectedText(), "12.5");
  text_.press(7, 1, true);
  EXPECT_EQ(text_.selectedText(), "12");
  text_.press(0, 1, true);
  EXPECT_EQ(text_.selectedText(), "left ");
}

TEST_F(Pressing, InsideACharacterMeansBeforeIt) {
  text_.begin("e\u0301x");
  text_.press(1, 1, false);
  EXPECT_EQ(text_.caret(), 0U);
}

TEST_F(Pressing, AnEmptyTextTakesEveryClick) {
  text_.begin("");
  for (const int clicks : {1, 2, 3, 4}) {
    text_.press(0, clicks, false);
    text_.dragTo(0);
    EXPECT_FALSE(text_.hasSelection());
  }
}

}  // namespace
}  // namespace cocoa
