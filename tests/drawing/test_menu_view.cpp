// SPDX-License-Identifier: MIT
#include <vector>

#include "appkit/NSApplication.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSClass.h"
#include "foundation/private/InterfaceLoader.h"
#include "menu_view_fixture.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::Menu;
using test::MenuView;

TEST_F(MenuView, ItsRectanglesAreTheCapsAndWhatLiesBetween) {
  EXPECT_EQ(menu->_body_rect, NSMakeRect(0, 0, 120, 20));
  EXPECT_EQ(menu->left_rect, NSMakeRect(0, 0, 15, 20));
  EXPECT_EQ(menu->right_rect, NSMakeRect(105, 0, 15, 20));
  EXPECT_EQ(menu->control_rect, NSMakeRect(15, 0, 90, 20));
  menu->setFrameSize({300, 50});
  EXPECT_EQ(menu->control_rect, NSMakeRect(15, 0, 90, 20)) << "those of its creation";
}

TEST_F(MenuView, ItsTitleIsACentredCaptionInOpaqueBlack) {
  const auto& attributes = *menu->title_string_attributes;
  const auto* font = dynamic_cast<NSFont*>(attributes.objectForKey(NSFontAttributeName));
  const auto* style =
      dynamic_cast<NSMutableParagraphStyle*>(attributes.objectForKey(NSParagraphStyleAttributeName));
  EXPECT_EQ(font->pointSize(), 9);
  EXPECT_FALSE(font->isBold());
  EXPECT_EQ(style->alignment(), NSCenterTextAlignment);
  EXPECT_EQ(attributes.objectForKey(NSForegroundColorAttributeName), menu->line_color.get());
  EXPECT_TRUE(menu->line_color->isEqual(NSColor::colorWithDeviceWhite_alpha(0, 1).get()));
}

// Items

TEST_F(MenuView, WorksTheItemsOfItsButton) {
  EXPECT_EQ(menu->numberOfItems(), 3);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
  menu->select_index(2);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  menu->insert_item_at_index(text("Saw").get(), 1);
  EXPECT_EQ(button->itemAtIndex(1)->title(), "Saw");
  EXPECT_EQ(menu->indexOfSelectedItem(), 3);
  menu->append_item(text("Sine").get());
  EXPECT_EQ(button->cell()->indexOfItemWithTitle("Sine"), 3) << "a title is there once";
  menu->remove_all_items();
  EXPECT_EQ(button->numberOfItems(), 0);
  EXPECT_EQ(menu->indexOfSelectedItem(), -1);
}

TEST_F(MenuView, AnIndexOutsideTheListDeselects) {
  menu->select_index(7);
  EXPECT_EQ(menu->indexOfSelectedItem(), -1);
  menu->select_index(1);
  menu->select_index(-1);
  EXPECT_EQ(menu->indexOfSelectedItem(), -1);
}

TEST_F(MenuView, WithoutAButtonThereIsNothingToDo) {
  const auto bare = make<Menu>(frame);
  EXPECT_EQ(bare->indexOfSelectedItem(), -1);
  EXPECT_EQ(bare->numberOfItems(), 0);
  bare->select_index(0);
  bare->insert_item_at_index(text("Sine").get(), 0);
  bare->append_item(text("Sine").get());
  bare->remove_all_items();
  bare->set_callback_onObject(test::edited_selector, host.get());
  for (const double x : {in_left, in_middle, in_right}) {
    test::press(*bare, 1, x, height);
    EXPECT_TRUE(bare->mouse_is_down);
    EXPECT_EQ(bare->mouse_is_down_in_left, x == in_left);
    EXPECT_EQ(bare->mouse_is_down_in_right, x == in_right);
    test::lift(*bare);
  }
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuView, NullIsIgnored) {
  const auto color = NSColor::yellowColor();
  menu->set_colors_for_line(color.get());
  menu->set_colors_for_line(nullptr);
  menu->set_menu_button(nullptr);
  menu->append_item(nullptr);
  menu->set_callback_onObject(SEL(), host.get());
  menu->set_callback_onObject(test::selected_selector, nullptr);
  EXPECT_EQ(menu->line_color, color.get());
  EXPECT_EQ(menu->menu_button, button.get());
  EXPECT_EQ(menu->numberOfItems(), 3);
  click(in_left);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuView, KeepsWhatItIsGivenAndReleasesIt) {
  const auto color = NSColor::colorWithDeviceWhite_alpha(0.5, 1);
  menu->set_colors_for_line(color.get());
  EXPECT_EQ(color->retainCount(), 3U) << "by the field and by the attributes";
  EXPECT_EQ(button->retainCount(), 2U);
  EXPECT_EQ(host->retainCount(), 2U);
  const auto other = make<NSPopUpButton>(frame);
  menu->set_menu_button(other.get());
  EXPECT_EQ(button->retainCount(), 1U);
  menu = nullptr;
  EXPECT_EQ(color->retainCount(), 1U);
  EXPECT_EQ(other->retainCount(), 1U);
  EXPECT_EQ(host->retainCount(), 1U);
}

// Caps

TEST_F(MenuView, TheLeftCapStepsBackAndAroundTheBeginning) {
  for (const int expected : {2, 1, 0, 2}) {
    click(in_left);
    EXPECT_EQ(menu->indexOfSelectedItem(), expected);
  }
  EXPECT_EQ(host->edited, (std::vector<NSObject*>(4, menu.get())));
}

TEST_F(MenuView, TheRightCapStepsForwardAndAroundTheEnd) {
  menu->select_index(1);
  for (const int expected : {2, 0, 1}) {
    click(in_right);
    EXPECT_EQ(menu->indexOfSelectedItem(), expected);
  }
  EXPECT_EQ(host->edited.size(), 3U);
}

TEST_F(MenuView, WithNothingSelectedTheCapsBeginAtTheirEnd) {
  menu->select_index(-1);
  click(in_right);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
  menu->select_index(-1);
  click(in_left);
  EXPECT_EQ(menu->indexOfSelectedItem(), 2);
}

TEST_F(MenuView, WithAnEmptyButtonTheCapsSelectNothingButReport) {
  menu->remove_all_items();
  click(in_left);
  EXPECT_EQ(menu->indexOfSelectedItem(), -1);
  click(in_right);
  EXPECT_EQ(menu->indexOfSelectedItem(), -1);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(MenuView, TheCapsEdgesBelongToTheNextOnTheRight) {
  test::press(*menu, 1, 20, height);
  EXPECT_TRUE(menu->mouse_is_down_in_left);
  test::lift(*menu);
  test::press(*menu, 1, 34.99, height);
  EXPECT_TRUE(menu->mouse_is_down_in_left);
  test::lift(*menu);
  test::press(*menu, 1, 35, height);
  EXPECT_FALSE(menu->mouse_is_down_in_left);
  test::lift(*menu);
  test::press(*menu, 1, 125, height);
  EXPECT_TRUE(menu->mouse_is_down_in_right);
}

TEST_F(MenuView, ADoubleClickStepsOnceAndAThirdPressAgain) {
  test::press(*menu, 1, in_right, height);
  test::lift(*menu);
  test::press(*menu, 2, in_right, height);
  EXPECT_FALSE(menu->mouse_is_down) << "the second press is none at all";
  EXPECT_FALSE(menu->mouse_is_down_in_right);
  test::lift(*menu);
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited.size(), 1U);
  test::press(*menu, 3, in_right, height);
  EXPECT_EQ(menu->indexOfSelectedItem(), 2);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(MenuView, ACapIsPressedUntilTheMouseIsReleased) {
  test::press(*menu, 1, in_left, height);
  EXPECT_TRUE(menu->mouse_is_down);
  EXPECT_TRUE(menu->mouse_is_down_in_left);
  test::drag_to(*menu, 500, 500);
  EXPECT_TRUE(menu->mouse_is_down_in_left);
  test::lift(*menu);
  EXPECT_FALSE(menu->mouse_is_down);
  EXPECT_FALSE(menu->mouse_is_down_in_left);
}

TEST_F(MenuView, MayGoWhileItsActionRuns) {
  Menu* pressed = menu.get();
  host->on_edited = [this] { menu = nullptr; };
  test::press(*pressed, 1, in_left, height);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuView, OutsideAnyWindowTheMiddleReportsAtOnce) {
  click(in_middle);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
}

// Interface files

class Owner : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  KV_Ondex_Menu_View* menu = nullptr;

 private:
  static const Outlet outlets_[1];
};
const Outlet Owner::outlets_[1] = {{"menu", FieldOutlet<&Owner::menu>::set}};
const Class Owner::class_ = {.name = "Owner", .superclass = &NSObject::class_, .outlets = outlets_};

TEST(MenuViewInterface, IsLoadedByItsClassAndConnectedToItsButton) {
  const NSAutoreleasePool pool;
  NSApplicationLoad();
  const auto owner = make<Owner>();
  const auto classes = [](std::string_view name) {
    return name == KV_Ondex_Menu_View::class_.name ? &KV_Ondex_Menu_View::class_ : NSClassFromString(name);
  };
  ASSERT_TRUE(load_interface("Menu.xib", R"(
    <document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"><objects>
      <customObject id="-2" customClass="Owner"><connections>
        <outlet property="menu" destination="2" id="90"/></connections></customObject>
      <customView id="1"><rect key="frame" x="0" y="0" width="300" height="100"/><subviews>
        <customView id="2" customClass="KV_Ondex_Menu_View">
          <rect key="frame" x="10" y="10" width="120" height="20"/>
          <connections><outlet property="menu_button" destination="3" id="91"/></connections>
        </customView>
        <popUpButton hidden="YES" id="3"><rect key="frame" x="10" y="50" width="120" height="20"/>
          <popUpButtonCell key="cell" selectedItem="7" id="4"><menu key="menu" id="5"><items>
            <menuItem title="Sine" id="6"/><menuItem title="Square" id="7"/>
          </items></menu></popUpButtonCell>
        </popUpButton>
      </subviews></customView>
    </objects></document>)",
                             classes, owner.get()));
  ASSERT_TRUE(owner->menu);
  EXPECT_EQ(owner->menu->frame(), NSMakeRect(10, 10, 120, 20));
  EXPECT_EQ(owner->menu->numberOfItems(), 2);
  EXPECT_EQ(owner->menu->indexOfSelectedItem(), 1);
}

}  // namespace
}  // namespace ondex
