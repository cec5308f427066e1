// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <limits>

#include "appkit/NSEvent.h"
#include "text_field_fixture.h"

namespace cocoa {
namespace {

using TextField = TextFieldFixture;

TEST_F(TextField, IsEditedWithAllSelectedOnceItsWindowIsKey) {
  EXPECT_TRUE(field->isEditing());
  EXPECT_EQ(window->firstResponder(), field.get());
  EXPECT_EQ(selected(), "12.5");
}

TEST_F(TextField, TypingReplacesTheValueAndReturnTakesIt) {
  type("7");
  type("8");
  EXPECT_EQ(text(), "78");
  EXPECT_TRUE(target->values.empty());
  press(key::enter);
  EXPECT_EQ(target->values, std::vector<double>{78});
  EXPECT_TRUE(field->isEditing());
  EXPECT_EQ(selected(), "78");
}

TEST_F(TextField, TheKeypadsEnterIsReturn) {
  type("3");
  press(key::keypad_enter);
  EXPECT_EQ(target->values, std::vector<double>{3});
}

TEST_F(TextField, TheKeypadTypesDigitsAndAPointInEveryLayout) {
  press(key::keypad_7);
  shown().key_down(key::keypad_separator, ",");
  turn();
  press(key::keypad_7);
  EXPECT_EQ(text(), "7.7");
  press(key::backspace);
  press(key::backspace);
  press(key::keypad_decimal);
  EXPECT_EQ(text(), "7.");
}

TEST_F(TextField, ACommaIsADecimalPoint) {
  type("0,25");
  EXPECT_EQ(text(), "0,25");
  press(key::enter);
  EXPECT_EQ(target->values, std::vector<double>{0.25});
}

TEST_F(TextField, TextThatIsNoNumberIsRefusedUntilItIsChanged) {
  type("1x");
  press(key::enter);
  EXPECT_TRUE(target->values.empty());
  EXPECT_TRUE(field->isRefused());
  EXPECT_EQ(text(), "1x");
  EXPECT_EQ(field->doubleValue(), 12.5) << "nothing is taken";
  press(key::backspace);
  EXPECT_FALSE(field->isRefused());
  press(key::enter);
  EXPECT_EQ(target->values, std::vector<double>{1});
}

TEST_F(TextField, AnEmptyTextIsRefused) {
  press(key::backspace);
  press(key::enter);
  EXPECT_TRUE(field->isRefused());
  EXPECT_TRUE(target->values.empty());
}

TEST_F(TextField, ANumberOutsideTheBoundsIsRefusedUnlessTheFormatterIsLenient) {
  formatter->setMaximum(20);
  type("50");
  press(key::enter);
  EXPECT_TRUE(field->isRefused());
  formatter->setLenient(true);
  press(key::enter);
  EXPECT_FALSE(field->isRefused());
  EXPECT_EQ(target->values, std::vector<double>{50});
}

TEST_F(TextField, AValueThatIsNotTouchedReadsBackAsItWasSet) {
  formatter->setMaximumFractionDigits(2);
  field->setFloatValue(0.123456F);
  EXPECT_EQ(field->stringValue()->view(), "0.12");
  field->selectText(nullptr);
  press(key::enter);
  ASSERT_EQ(target->values.size(), 1U);
  EXPECT_EQ(target->values[0], static_cast<double>(0.123456F));
  field->setFloatValue(static_cast<float>(0.1));
  EXPECT_EQ(static_cast<double>(field->floatValue()), 0.10000000149011612);
}

TEST_F(TextField, ReadingWhileEditingTakesWhatIsTypedIfItIsANumber) {
  type("3,5");
  EXPECT_EQ(field->floatValue(), 3.5F);
  type("x");
  EXPECT_EQ(field->floatValue(), 3.5F);
  EXPECT_EQ(text(), "3,5x") << "reading leaves the text alone";
}

TEST_F(TextField, ANumberBeyondTheFloatsIsTheLargestOfThem) {
  type("1e99");
  EXPECT_EQ(field->floatValue(), std::numeric_limits<float>::max());
  EXPECT_EQ(field->doubleValue(), 1e99);
}

TEST_F(TextField, SettingTheValueEndsEditing) {
  type("99");
  field->setDoubleValue(5);
  EXPECT_FALSE(field->isEditing());
  EXPECT_EQ(field->stringValue()->view(), "5");
  EXPECT_EQ(field->doubleValue(), 5.0);
}

TEST_F(TextField, EscapeGoesOnToWhoeverItLiesIn) {
  type("99");
  press(key::escape);
  EXPECT_EQ(content->cancelled, 1);
  EXPECT_TRUE(target->values.empty());
}

TEST_F(TextField, KeysItHasNoUseForGoOn) {
  press(XKB_KEY_F1);
  shown().key_down('p', "", modifier_control);
  shown().key_down('p', "p", modifier_option);
  turn();
  EXPECT_EQ(content->keys, 3);
  EXPECT_EQ(text(), "12.5");
}

TEST_F(TextField, AFieldInAnotherWindowForgetsWhatWasTyped) {
  type("99");
  const auto other = make<NSWindow>(NSMakeRect(0, 0, 200, 60), NSTitledWindowMask);
  other->setContentView(content.get());
  EXPECT_FALSE(field->isEditing());
  EXPECT_EQ(field->doubleValue(), 12.5);
}

TEST_F(TextField, TabGoesRoundTheFieldsAndARefusedTextStays) {
  const auto second = make<NSTextField>(NSMakeRect(20, 40, 160, 20));
  content->addSubview(second.get());
  press(key::tab);
  EXPECT_EQ(window->firstResponder(), second.get());
  EXPECT_FALSE(field->isEditing());
  press(key::tab);
  EXPECT_EQ(window->firstResponder(), field.get());
  press(key::left_tab, modifier_shift);
  EXPECT_EQ(window->firstResponder(), second.get());
  press(key::tab);
  type("x");
  press(key::tab);
  EXPECT_EQ(window->firstResponder(), field.get());
  EXPECT_TRUE(field->isRefused());
}

TEST_F(TextField, LeavingAChangedFieldSendsTheActionOnlyWhenAskedTo) {
  const auto second = make<NSTextField>(NSMakeRect(20, 40, 160, 20));
  content->addSubview(second.get());
  type("3");
  press(key::tab);
  EXPECT_TRUE(target->values.empty());
  EXPECT_EQ(field->doubleValue(), 3.0);
  field->setSendsActionOnEndEditing(true);
  press(key::tab);
  press(key::tab);
  EXPECT_TRUE(target->values.empty()) << "nothing was changed";
  press(key::tab);
  type("4");
  press(key::tab);
  EXPECT_EQ(target->values, std::vector<double>{4});
}

TEST_F(TextField, TellsItsDelegateOfEveryChangeOfTheText) {
  struct Delegate : NSTextFieldDelegate {
    void controlTextDidChange(NSTextField*) override { ++changes; }
    int changes = 0;
  } delegate;
  field->setDelegate(&delegate);
  type("34");
  press(key::left);
  control('z');
  EXPECT_EQ(delegate.changes, 3);
  press(key::enter);
  EXPECT_EQ(delegate.changes, 3);
}

TEST_F(TextField, OneThatMayNotBeEditedIsReadOnly) {
  field->setEditable(false);
  field->selectText(nullptr);
  type("9");
  press(key::backspace);
  control('x');
  EXPECT_EQ(text(), "12.5");
  EXPECT_EQ(HeadlessWindowSystem::offeredText(Pasteboard::copied), std::nullopt);
  control('c');
  EXPECT_EQ(HeadlessWindowSystem::offeredText(Pasteboard::copied), "12.5");
}

TEST_F(TextField, WithoutAFormatterEveryTextIsAValue) {
  field->setFormatter(nullptr);
  type("#ff8000");
  press(key::enter);
  EXPECT_EQ(field->stringValue()->view(), "#ff8000");
  EXPECT_EQ(target->values, std::vector<double>{0});
}

TEST_F(TextField, TheTargetMayGo) {
  target = nullptr;
  press(key::enter);
  EXPECT_TRUE(field->isEditing());
}

}  // namespace
}  // namespace cocoa
