// SPDX-License-Identifier: MIT
#include "appkit/NSPopUpButton.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas.h"

namespace cocoa {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> titles(const NSPopUpButton& button) {
  std::vector<std::string> all;
  for (const Ref<NSMenuItem>& item : button.menu()->itemArray())
    all.push_back(item->title());
  return all;
}

class PopUpButton : public testing::Test {
 protected:
  void fill(const std::vector<std::string>& with) {
    for (const std::string& title : with)
      button->addItemWithTitle(title);
  }
  std::vector<int> marked() const {
    std::vector<int> indices;
    for (int i = 0; i < button->numberOfItems(); ++i) {
      if (button->itemAtIndex(i)->state() == NSOnState)
        indices.push_back(i);
    }
    return indices;
  }

  Ref<NSPopUpButton> button = make<NSPopUpButton>(NSMakeRect(0, 0, 100, 20));
};

TEST_F(PopUpButton, AFreshOneHasNoItemsAndNothingSelected) {
  EXPECT_EQ(button->numberOfItems(), 0);
  EXPECT_EQ(button->indexOfSelectedItem(), -1);
  EXPECT_EQ(button->selectedItem(), nullptr);
  EXPECT_EQ(button->itemAtIndex(0), nullptr);
}

TEST_F(PopUpButton, TheFirstItemAddedIsSelected) {
  fill({"Sine", "Square"});
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_THAT(marked(), ElementsAre(0));
}

TEST_F(PopUpButton, WithNothingSelectedTheButtonHasNoTitleAndTheCellAnEmptyOne) {
  fill({"Sine"});
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "Sine");
  EXPECT_EQ(button->cell()->titleOfSelectedItem()->view(), "Sine");
  button->selectItemAtIndex(-1);
  EXPECT_FALSE(button->titleOfSelectedItem());
  EXPECT_EQ(button->cell()->titleOfSelectedItem()->view(), "");
}

TEST_F(PopUpButton, ATitleAddedAgainMovesToTheEnd) {
  fill({"Sine", "Square", "Triangle", "Square"});
  EXPECT_THAT(titles(*button), ElementsAre("Sine", "Triangle", "Square"));
}

TEST_F(PopUpButton, ATitleInsertedAgainGoesWhereTheListWithoutItHasTheIndex) {
  fill({"Sine", "Square", "Triangle", "Noise"});
  button->insertItemWithTitle_atIndex("Sine", 2);
  EXPECT_THAT(titles(*button), ElementsAre("Square", "Triangle", "Sine", "Noise"));
}

TEST_F(PopUpButton, AnItemInsertedBeyondAnEndGoesToThatEnd) {
  fill({"Sine"});
  button->insertItemWithTitle_atIndex("last", 99);
  button->insertItemWithTitle_atIndex("first", -5);
  EXPECT_THAT(titles(*button), ElementsAre("first", "Sine", "last"));
}

TEST_F(PopUpButton, TheMenuItselfTakesATitleTwice) {
  fill({"Sine", "Square"});
  button->menu()->addItem(make<NSMenuItem>("Sine").get());
  EXPECT_THAT(titles(*button), ElementsAre("Sine", "Square", "Sine"));
  button->selectItemAtIndex(2);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  EXPECT_EQ(button->cell()->indexOfItemWithTitle("Sine"), 0) << "a title finds the first";
  EXPECT_THAT(marked(), ElementsAre(2));
}

TEST_F(PopUpButton, AnItemIsInAMenuOnce) {
  const auto item = make<NSMenuItem>("Sine");
  button->menu()->addItem(item.get());
  button->menu()->insertItem_atIndex(item.get(), 0);
  button->menu()->addItem(nullptr);
  EXPECT_EQ(button->numberOfItems(), 1);
}

TEST_F(PopUpButton, IndicesOutsideTheListDeselect) {
  fill({"Sine", "Square"});
  for (const int outside : {-1, 2, 1000, -1000}) {
    button->selectItemAtIndex(1);
    button->selectItemAtIndex(outside);
    EXPECT_EQ(button->indexOfSelectedItem(), -1) << outside;
    EXPECT_THAT(marked(), IsEmpty());
  }
}

TEST_F(PopUpButton, TheSelectionStaysWithItsItemWhenOthersAreInserted) {
  fill({"Sine", "Square"});
  button->selectItemAtIndex(1);
  button->insertItemWithTitle_atIndex("Noise", 0);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
}

TEST_F(PopUpButton, AddingWithNothingSelectedSelectsTheFirst) {
  fill({"Sine", "Square"});
  button->selectItemAtIndex(-1);
  button->addItemWithTitle("Noise");
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(PopUpButton, RemovingTheSelectedItemSelectsTheFirst) {
  fill({"Sine", "Square", "Noise"});
  button->selectItemAtIndex(1);
  button->cell()->removeItemAtIndex(1);
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_THAT(marked(), ElementsAre(0));
  button->cell()->removeItemWithTitle("Noise");
  EXPECT_THAT(titles(*button), ElementsAre("Sine"));
}

TEST_F(PopUpButton, AddingTheSelectedTitleAgainSelectsTheFirst) {
  fill({"Sine", "Square", "Noise"});
  button->selectItemAtIndex(1);
  button->addItemWithTitle("Square");
  EXPECT_EQ(button->indexOfSelectedItem(), 0) << "the item that was selected is gone";
}

TEST_F(PopUpButton, RemovingOutsideTheListDoesNothing) {
  fill({"Sine"});
  button->cell()->removeItemAtIndex(-1);
  button->cell()->removeItemAtIndex(1);
  button->cell()->removeItemWithTitle("Noise");
  EXPECT_THAT(titles(*button), ElementsAre("Sine"));
}

TEST_F(PopUpButton, WhatTheMenuLosesByItselfIsNoLongerSelected) {
  fill({"Sine", "Square"});
  button->selectItemAtIndex(1);
  button->menu()->removeItemAtIndex(1);
  EXPECT_EQ(button->indexOfSelectedItem(), -1);
  EXPECT_EQ(button->selectedItem(), nullptr);
  EXPECT_FALSE(button->titleOfSelectedItem());
  button->cell()->synchronizeTitleAndSelectedItem();
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(PopUpButton, AllItemsMayGo) {
  fill({"Sine", "Square"});
  button->removeAllItems();
  EXPECT_EQ(button->numberOfItems(), 0);
  EXPECT_EQ(button->indexOfSelectedItem(), -1);
  button->selectItemAtIndex(0);
  button->selectItemAtIndex(-1);
  button->cell()->synchronizeTitleAndSelectedItem();
  EXPECT_EQ(button->indexOfSelectedItem(), -1);
}

TEST_F(PopUpButton, AnotherMenuBringsItsOwnSelection) {
  fill({"Sine", "Square"});
  button->selectItemAtIndex(1);
  const auto other = make<NSMenu>();
  other->addItem(make<NSMenuItem>("one").get());
  other->addItem(make<NSMenuItem>("two").get());
  button->cell()->setMenu(other.get());
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "one");
  button->cell()->setMenu(nullptr);
  EXPECT_EQ(button->menu(), other.get());
}

TEST_F(PopUpButton, ShowsTheTitleThatIsSelected) {
  const auto ink = [this] {
    Canvas canvas(100, 20);
    button->drawTree(button->bounds());
    int bright = 0;
    for (int x = 4; x < 80; ++x) {
      for (int y = 2; y < 18; ++y)
        bright += (canvas.at(x, y) & 0xFF) > 0x80 ? 1 : 0;
    }
    return bright;
  };
  EXPECT_EQ(ink(), 0);
  fill({"Square"});
  EXPECT_GT(ink(), 20);
}

}  // namespace
}  // namespace cocoa
