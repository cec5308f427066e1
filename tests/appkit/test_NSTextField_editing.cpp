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
