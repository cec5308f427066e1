// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>

#include "appkit/NSPopUpButton.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "gestures.h"
#include "interface_file_fixture.h"
#include "recording_host.h"

/// A menu view that an interface file of the bundle contains.

namespace ondex::test {
namespace {

using namespace cocoa;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* menu_and_button = R"(
  <customView id="menu-view" customClass="KV_Ondex_Menu_View">
    <rect key="frame" x="40" y="20" width="120" height="20"/>
    <connections>
      <outlet property="menu_button" destination="menu-button" id="connect-menu-button"/>
      <action selector="ACTION" target="TARGET" id="connect-menu-action"/>
    </connections>
  </customView>
  <popUpButton hidden="YES" id="menu-button">
    <rect key="frame" x="40" y="20" width="120" height="20"/>
    <popUpButtonCell key="cell" id="menu-cell">
      <menu key="menu" id="menu-of-three"><items>
        <menuItem title="Sine" id="item-1"/><menuItem title="Square" id="item-2"/><menuItem title="Noise" id="item-3"/>
      </items></menu>
    </popUpButtonCell>
  </popUpButton>)";

std::string menu_with_action(const std::string& action, const std::string& target) {
  std::string text = menu_and_button;
  text.replace(text.find("ACTION"), 6, action);
  return text.replace(text.find("TARGET"), 6, target);
}

/// Owner of a file with a menu view in a view of its own.
class MenuOwner : public RecordingHost {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  WeakPointer<NSView> view;
};
constexpr Outlet owner_outlets[] = {{"view", FieldOutlet<&MenuOwner::view>::set}};
const Class MenuOwner::class_ = {
    .name = "MenuOwner", .superclass = &RecordingHost::class_, .outlets = owner_outlets};

KV_Ondex_Menu_View* menu_in(const NSView& view) {
  for (const Ref<NSView>& each : view.subviews()) {
    if (auto* menu = dynamic_cast<KV_Ondex_Menu_View*>(each.get()))
      return menu;
  }
  return nullptr;
}

class MenuViewInBundle : public InterfaceFileTest {
 protected:
  static void click_right_cap(KV_Ondex_Menu_View& menu) {
    const NSPoint place = menu.convertPoint_toView({115, 10}, nullptr);
    press(menu, 1, static_cast<double>(place.x), static_cast<double>(place.y));
    lift(menu);
  }
};

TEST_F(MenuViewInBundle, IsConnectedWithItsButtonAndTellsWhomTheFileSays) {
  std::ofstream(folder.path() / "Menu.xib")
      << R"(<document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"><objects>
              <customObject id="-2"><connections>
                <outlet property="view" destination="view" id="connect-view"/>
              </connections></customObject>
              <customView id="view"><rect key="frame" x="0" y="0" width="300" height="100"/><subviews>)"
      << menu_with_action("edited:", "-2") << "</subviews></customView></objects></document>";
  const auto owner = make<MenuOwner>();
  ASSERT_TRUE(own_bundle->loadNibNamed_owner("Menu", owner.get())) << testing::PrintToString(log);
  KV_Ondex_Menu_View* menu = menu_in(*owner->view);
  ASSERT_TRUE(menu);
  EXPECT_EQ(menu->numberOfItems(), 3);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
  click_right_cap(*menu);
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_THAT(owner->edited, ElementsAre(menu));
  EXPECT_EQ(owner->retainCount(), 1U) << "an interface file's connections do not own";

  const auto host = make<RecordingHost>();
  menu->set_callback_onObject(edited_selector, host.get());
  click_right_cap(*menu);
  EXPECT_THAT(host->edited, ElementsAre(menu)) << "the callback set last is sent";
  EXPECT_EQ(owner->edited.size(), 1U);
}

TEST_F(MenuViewInBundle, TellsTheEditorWhichDoesNothing) {
  const std::string text = menu_with_action("menu_callback:", "editor");
  const std::string whole = "<subviews>" + text + "</subviews>";
  pugi::xml_document added;
  ASSERT_TRUE(added.load_string(whole.c_str()));
  for (const pugi::xml_node node : added.document_element().children())
    view_file.element("editor").child("subviews").append_copy(node);
  open_changed();
  ASSERT_TRUE(editor) << testing::PrintToString(log);
  show();
  KV_Ondex_Menu_View* menu = menu_in(*editor);
  ASSERT_TRUE(menu);
  click_right_cap(*menu);
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_THAT(writes, IsEmpty());

  // As code does it that has no action in its file.
  menu->set_callback_onObject(SEL("menu_callback:"), editor.get());
  click_right_cap(*menu);
  EXPECT_EQ(menu->indexOfSelectedItem(), 2);
  EXPECT_THAT(log, IsEmpty()) << "the editor knows the message";
  EXPECT_TRUE(close());
}

}  // namespace
}  // namespace ondex::test
