// SPDX-License-Identifier: MIT
#include "appkit/NSEvent.h"
#include "quartz/text.h"
#include "text_field_fixture.h"

namespace cocoa {
namespace {

class TextFieldEditing : public TextFieldFixture {
 protected:
  /// Where the caret stands before a character of the text, in the window.
  NSPoint before(size_t offset) const {
    TextStyle style;
    style.size = 13;
    return {23 + text_caret_position(text(), style, offset), 30};
  }
  void click(NSPoint where, int button = 0, uint32_t modifiers = 0) {
    shown().press(where, button, modifiers);
    shown().release(button);
    turn();
  }
  static std::optional<std::string> copied() { return HeadlessWindowSystem::offeredText(Pasteboard::copied); }
  static std::optional<std::string> primary() {
    return HeadlessWindowSystem::offeredText(Pasteboard::selected);
  }
};

TEST_F(TextFieldEditing, ArrowsMoveAndShiftSelects) {
  press(key::end);
  press(key::left);
  press(key::left, modifier_shift);
  EXPECT_EQ(selected(), ".");
  press(key::home, modifier_shift);
  EXPECT_EQ(selected(), "12.");
  press(key::right);
  type("7");
  EXPECT_EQ(text(), "12.75");
}

TEST_F(TextFieldEditing, ControlMovesAndErasesByWords) {
  field->setFormatter(nullptr);
  type("one two");
  press(key::left, modifier_control);
  EXPECT_EQ(field->editedText().caret(), 4U);
  press(key::backspace, modifier_control);
  EXPECT_EQ(text(), "two");
  press(key::forward_delete, modifier_control);
  EXPECT_EQ(text(), "");
  control('z');
  EXPECT_EQ(text(), "one two") << "what is erased in a row comes back at once";
  press(key::right, modifier_control | modifier_shift);
  EXPECT_EQ(selected(), "two");
}

TEST_F(TextFieldEditing, CopyCutAndPasteGoThroughTheSystem) {
  control('c');
  EXPECT_EQ(copied(), "12.5");
  control('x');
  EXPECT_EQ(text(), "");
  control('v');
  turn();
  control('v');
  turn();
  EXPECT_EQ(text(), "12.512.5");
}

TEST_F(TextFieldEditing, TheOtherKeysForCopyCutAndPasteWorkToo) {
  press(key::insert, modifier_control);
  EXPECT_EQ(copied(), "12.5");
  press(key::forward_delete, modifier_shift);
  EXPECT_EQ(text(), "");
  press(key::insert, modifier_shift);
  turn();
  EXPECT_EQ(text(), "12.5");
}

TEST_F(TextFieldEditing, CopyingNothingLeavesWhatWasCopied) {
  system.offerText(Pasteboard::copied, "before");
  press(key::end);
  control('c');
  control('x');
  EXPECT_EQ(copied(), "before");
  EXPECT_EQ(text(), "12.5");
}

TEST_F(TextFieldEditing, PastingTakesOneLineAndReplacesTheSelection) {
  system.offerText(Pasteboard::copied, "\n0,75\nmore");
  control('v');
  turn();
  EXPECT_EQ(text(), "0,75");
  control('z');
  EXPECT_EQ(text(), "12.5");
}

TEST_F(TextFieldEditing, PastingWhatNobodyOffersChangesNothing) {
  control('v');
  turn();
  EXPECT_EQ(selected(), "12.5");
}

TEST_F(TextFieldEditing, ATextThatComesAfterTheEndIsDropped) {
  system.offerText(Pasteboard::copied, "9");
  system.requestText(Pasteboard::copied, [this](const auto&) { field->setDoubleValue(1); });
  control('v');
  turn();
  turn();
  EXPECT_EQ(field->doubleValue(), 1.0);
  control('v');
  field->removeFromSuperview();
  field = make<NSTextField>(NSMakeRect(0, 0, 10, 10));
  turn();
}

/// With a text copied by a program that does not answer yet.
class SlowPaste : public TextFieldEditing {
 protected:
  SlowPaste() {
    system.offerText(Pasteboard::copied, "34");
    system.setOwnersAnswer(false);
  }
  void answer() {
    system.setOwnersAnswer(true);
    turn();
  }
};

TEST_F(SlowPaste, ReturnWaitsForTheText) {
  control('v');
  press(key::enter);
  EXPECT_TRUE(target->values.empty());
  answer();
  EXPECT_EQ(target->values, std::vector<double>{34});
}

TEST_F(SlowPaste, WhatIsTypedAfterThePasteComesAfterItsText) {
  control('v');
  type("5x");
  press(key::backspace);
  press(key::home);
  type("1");
  press(key::enter);
  EXPECT_EQ(selected(), "12.5");
  answer();
  EXPECT_EQ(target->values, std::vector<double>{1345});
}

TEST_F(SlowPaste, AnotherPasteWaitsForItsOwnText) {
  control('v');
  control('v');
  press(key::enter);
  answer();
  EXPECT_TRUE(target->values.empty()) << "the second one has been asked for only now";
  turn();
  EXPECT_EQ(target->values, std::vector<double>{3434});
}

TEST_F(SlowPaste, AKeyThatIsHeldPastesOnce) {
  control('v');
  for (int i = 0; i < 20; ++i)
    shown().key_down('v', "", modifier_control, true);
  turn();
  press(key::enter);
  answer();
  EXPECT_EQ(target->values, std::vector<double>{34});
}

TEST_F(SlowPaste, WithoutAnAnswerReturnTakesWhatIsThere) {
  control('v');
  type("7");
  press(key::enter);
  HeadlessWindowSystem::clearPasteboards();
  answer();
  EXPECT_EQ(target->values, std::vector<double>{7});
}

TEST_F(SlowPaste, EscapeDoesNotWaitAndDropsWhatDoes) {
  control('v');
  press(key::enter);
  press(key::escape);
  EXPECT_EQ(content->cancelled, 1);
  answer();
  turn();
  EXPECT_TRUE(target->values.empty());
  EXPECT_EQ(selected(), "12.5");
  type("8");
  press(key::enter);
  EXPECT_EQ(target->values, std::vector<double>{8});
}

TEST_F(SlowPaste, LosingTheKeysDropsIt) {
  control('v');
  press(key::enter);
  system.loseKey();
  turn();
  answer();
  turn();
  EXPECT_TRUE(target->values.empty());
  EXPECT_EQ(text(), "12.5");
}

TEST_F(SlowPaste, AValueThatIsSetDropsIt) {
  control('v');
  press(key::enter);
  field->setDoubleValue(3);
  answer();
  turn();
  EXPECT_TRUE(target->values.empty());
  EXPECT_EQ(field->doubleValue(), 3.0);
}

TEST_F(SlowPaste, TabTakesTheTextAlongAndTheKeysAfterItGoToTheNextField) {
  const auto next = make<NSTextField>(NSMakeRect(20, 0, 160, 20));
  content->addSubview(next.get());
  control('v');
  press(key::tab);
  type("9");
  EXPECT_EQ(window->firstResponder(), field.get());
  answer();
  EXPECT_EQ(field->doubleValue(), 34.0);
  EXPECT_EQ(window->firstResponder(), next.get());
  EXPECT_EQ(next->editedText().text(), "9");
}

TEST_F(SlowPaste, TheKeysThatGoToAnotherViewByTheMouseLeaveNothingHalfTyped) {
  field->setSendsActionOnEndEditing(true);
  type("7");
  control('v');
  window->makeFirstResponder(nullptr);
  answer();
  EXPECT_TRUE(target->values.empty());
  EXPECT_EQ(field->doubleValue(), 12.5);
}

TEST_F(SlowPaste, TheMouseInTheFieldWaitsToo) {
  control('v');
  click(before(0));
  type("5");
  answer();
  EXPECT_EQ(text(), "534");
}

TEST_F(SlowPaste, TheMiddleButtonsTextKeepsItsPlaceAmongTheOthers) {
  system.offerText(Pasteboard::selected, "6");
  control('v');
  click(before(0), 2);
  type("7");
  press(key::enter);
  answer();
  turn();
  EXPECT_EQ(target->values, std::vector<double>{6734});
}

TEST_F(TextFieldEditing, UndoAndRedoInTheField) {
  type("34");
  control('z');
  EXPECT_EQ(selected(), "12.5");
  control('z', modifier_shift);
  EXPECT_EQ(text(), "34");
  control('z');
  control('y');
  EXPECT_EQ(text(), "34");
}

TEST_F(TextFieldEditing, OutsideOfAnyWindowTabLeadsNowhere) {
  field->removeFromSuperview();
  field->becomeFirstResponder();
  for (const uint32_t keysym : {key::tab, key::left_tab}) {
    WindowEvent event;
    event.type = WindowEventType::key_down;
    event.keysym = keysym;
    field->keyDown(make<NSEvent>(event, nullptr).get());
    EXPECT_TRUE(field->isEditing());
  }
}

TEST_F(TextFieldEditing, CapsLockLeavesShortcutsAlone) {
  control('C');
  EXPECT_EQ(copied(), "12.5");
}

TEST_F(TextFieldEditing, AClickPutsTheCaretBetweenLetters) {
  click(before(2));
  EXPECT_FALSE(field->editedText().hasSelection());
  EXPECT_EQ(field->editedText().caret(), 2U);
  click({178, 30});
  EXPECT_EQ(field->editedText().caret(), 4U);
  click({21, 30}, 0, modifier_shift);
  EXPECT_EQ(selected(), "12.5");
}

TEST_F(TextFieldEditing, DraggingSelectsAndOffersTheSelectionOnceTheButtonIsUp) {
  shown().press(before(0));
  shown().drag_to(before(3));
  turn();
  EXPECT_EQ(selected(), "12.");
  EXPECT_EQ(primary(), std::nullopt);
  shown().drag_to(before(2));
  shown().release();
  turn();
  EXPECT_EQ(primary(), "12");
}

TEST_F(TextFieldEditing, TwoClicksTakeAWordAndThreeEverything) {
  field->setFormatter(nullptr);
  type("rate 12.5");
  click(before(6));
  click(before(6));
  EXPECT_EQ(selected(), "12.5");
  EXPECT_EQ(primary(), "12.5");
  click(before(6));
  EXPECT_EQ(selected(), "rate 12.5");
}

TEST_F(TextFieldEditing, SelectingWithTheKeyboardOffersTooButBeginningToEditDoesNot) {
  EXPECT_EQ(primary(), std::nullopt);
  press(key::left, modifier_shift);
  EXPECT_EQ(primary(), "12.");
  control('a');
  EXPECT_EQ(primary(), "12.5");
}

TEST_F(TextFieldEditing, TheMiddleButtonPutsInWhatIsSelectedElsewhere) {
  system.offerText(Pasteboard::selected, "34");
  click(before(1), 2);
  turn();
  EXPECT_EQ(text(), "1342.5");
  EXPECT_EQ(primary(), "34");
}

TEST_F(TextFieldEditing, TheCaretBlinksOnlyWhileItsWindowHasTheKeys) {
  press(key::end);
  const auto blinks = [this] {
    shown().clearPresented();
    clock.advance(0.5);
    turn();
    return !shown().presented().empty();
  };
  EXPECT_TRUE(blinks());
  EXPECT_TRUE(blinks());
  control('a');
  EXPECT_FALSE(blinks()) << "a selection has no caret";
  press(key::end);
  system.loseKey();
  turn();
  EXPECT_FALSE(blinks());
}

TEST_F(TextFieldEditing, ATextWiderThanTheFieldFollowsTheCaret) {
  field->setFormatter(nullptr);
  type(std::string(80, '7'));
  click({178, 30});
  EXPECT_EQ(field->editedText().caret(), 80U) << "the end shows";
  press(key::home);
  click({24, 30});
  EXPECT_EQ(field->editedText().caret(), 0U) << "the beginning shows";
}

}  // namespace
}  // namespace cocoa
