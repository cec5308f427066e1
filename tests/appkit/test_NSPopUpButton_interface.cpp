// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "appkit/NSApplication.h"
#include "appkit/NSPopUpButton.h"
#include "foundation/NSClass.h"
#include "foundation/NSLog.h"
#include "foundation/private/InterfaceLoader.h"

namespace cocoa {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Owns what an interface file connects, and hears the actions.
class Owner : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  void chosen(NSObject* from) { sender = from; }

  NSPopUpButton* button = nullptr;
  NSMenuItem* item = nullptr;
  NSObject* sender = nullptr;

 private:
  static const Outlet outlets_[2];
  static const Action actions_[1];
};
const Outlet Owner::outlets_[2] = {{"button", FieldOutlet<&Owner::button>::set},
                                   {"item", FieldOutlet<&Owner::item>::set}};
const Action Owner::actions_[1] = {{SEL("chosen:"), MethodAction<&Owner::chosen>::perform}};
const Class Owner::class_ = {
    .name = "Owner", .superclass = &NSObject::class_, .outlets = outlets_, .actions = actions_};

class PopUpButtonInterface : public testing::Test {
 protected:
  PopUpButtonInterface() { NSApplicationLoad(); }

  /// Of a pop-up button with this cell.
  bool load(const std::string& cell, const std::string& connections = "") {
    const std::string document =
        R"(<document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"><objects>
        <customObject id="-2" userLabel="File's Owner" customClass="Owner"><connections>
          <outlet property="button" destination="10" id="90"/>)" +
        connections + R"(</connections></customObject>
        <popUpButton id="10"><rect key="frame" x="5" y="6" width="100" height="20"/>)" +
        cell + R"(<connections><action selector="chosen:" target="-2" id="91"/></connections>
        </popUpButton></objects></document>)";
    return load_interface("Choice.xib", document, NSClassFromString, owner.get());
  }

  NSAutoreleasePool pool;
  std::vector<std::string> log;
  NSLogHook hook{[this](std::string_view line) { log.emplace_back(line); }};
  Ref<Owner> owner = make<Owner>();
};

constexpr const char* three_items = R"(<menu key="menu" id="12"><items>
    <menuItem title="Sine" id="13"/>
    <menuItem title="Square" state="on" id="14"/>
    <menuItem isSeparatorItem="YES" id="15"/>
    <menuItem title="Noise" enabled="NO" state="mixed" id="16">
      <modifierMask key="keyEquivalentModifierMask"/></menuItem>
  </items></menu></popUpButtonCell>)";

TEST_F(PopUpButtonInterface, ReadsItsMenuAndItsSelection) {
  ASSERT_TRUE(load(std::string(R"(<popUpButtonCell key="cell" type="push" title="Square" bezelStyle="rounded"
      alignment="left" lineBreakMode="truncatingTail" state="on" borderStyle="borderAndBezel" inset="2"
      selectedItem="14" id="11"><behavior key="behavior" lightByBackground="YES" lightByGray="YES"/>
      <font key="font" metaFont="menu"/>)") +
                   three_items))
      << log.front();
  EXPECT_THAT(log, IsEmpty());
  const NSPopUpButton& button = *owner->button;
  EXPECT_EQ(button.frame(), NSMakeRect(5, 6, 100, 20));
  ASSERT_EQ(button.numberOfItems(), 4);
  EXPECT_EQ(button.indexOfSelectedItem(), 1);
  EXPECT_EQ(button.itemAtIndex(1)->state(), NSOnState);
  EXPECT_EQ(button.itemAtIndex(0)->title(), "Sine");
  EXPECT_TRUE(button.itemAtIndex(2)->isSeparatorItem());
  EXPECT_FALSE(button.itemAtIndex(2)->isEnabled());
  EXPECT_FALSE(button.itemAtIndex(3)->isEnabled());
}

TEST_F(PopUpButtonInterface, WithoutASelectionTheFirstItemIsSelected) {
  ASSERT_TRUE(load(std::string(R"(<popUpButtonCell key="cell" id="11">)") + three_items));
  EXPECT_EQ(owner->button->indexOfSelectedItem(), 0);
  EXPECT_EQ(owner->button->itemAtIndex(1)->state(), NSOffState) << "a mark is the selection's";
}

TEST_F(PopUpButtonInterface, WithoutACellItIsEmpty) {
  ASSERT_TRUE(load(""));
  EXPECT_EQ(owner->button->numberOfItems(), 0);
}

TEST_F(PopUpButtonInterface, ConnectsItsActionAndItsItems) {
  ASSERT_TRUE(load(std::string(R"(<popUpButtonCell key="cell" id="11">)") + three_items,
                   R"(<outlet property="item" destination="14" id="92"/>)"));
  EXPECT_EQ(owner->item, owner->button->itemAtIndex(1));
}

TEST_F(PopUpButtonInterface, ASelectedItemThatIsNotItsOwnFailsTheLoad) {
  EXPECT_FALSE(load(std::string(R"(<popUpButtonCell key="cell" selectedItem="10" id="11">)") + three_items));
  ASSERT_EQ(log.size(), 1U);
  EXPECT_THAT(log.front(), HasSubstr("<popUpButtonCell id=\"11\">"));
  EXPECT_EQ(owner->button, nullptr);
}

TEST_F(PopUpButtonInterface, WhatIsNotSupportedSaysSo) {
  EXPECT_FALSE(load(std::string(R"(<popUpButtonCell key="cell" pullsDown="YES" id="11">)") + three_items));
  EXPECT_FALSE(load(R"(<popUpButtonCell key="cell" id="11"><menu key="menu" id="12"><items>
      <menuItem title="More" id="13"><menu key="submenu" id="14"/></menuItem>
      </items></menu></popUpButtonCell>)"));
  EXPECT_THAT(log, ElementsAre(HasSubstr("pull-down"), HasSubstr("submenu")));
}

TEST_F(PopUpButtonInterface, SomethingElseAmongTheItemsFailsTheLoad) {
  EXPECT_FALSE(load(R"(<popUpButtonCell key="cell" id="11"><menu key="menu" id="12"><items>
      <view id="13"><rect key="frame" x="0" y="0" width="1" height="1"/></view>
      </items></menu></popUpButtonCell>)"));
  EXPECT_EQ(log.size(), 1U);
}

}  // namespace
}  // namespace cocoa
