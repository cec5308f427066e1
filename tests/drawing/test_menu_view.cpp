#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "appkit/NSApplication.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "capsule_colors.h"
#include "drawing/KV_Ondex_Menu_View.h"
#include "foundation/InterfaceLoader.h"
#include "foundation/NSClass.h"
#include "gestures.h"
#include "manual_clock.h"
#include "recording_host.h"
#include "shading_faults.h"
#include "windows/headless.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::Pixel;
using test::RecordingHost;

constexpr NSRect frame = {{20, 30}, {120, 20}};
// In the view, which is not in a window, events and views have the same coordinates but for the frame's
// origin.
constexpr double in_left = 25;
constexpr double in_middle = 80;
constexpr double in_right = 130;
constexpr double height = 40;

class Menu : public KV_Ondex_Menu_View {
 public:
  using KV_Ondex_Menu_View::_body_rect;
  using KV_Ondex_Menu_View::control_rect;
  using KV_Ondex_Menu_View::KV_Ondex_Menu_View;
  using KV_Ondex_Menu_View::left_rect;
  using KV_Ondex_Menu_View::line_color;
  using KV_Ondex_Menu_View::menu_button;
  using KV_Ondex_Menu_View::mouse_is_down;
  using KV_Ondex_Menu_View::mouse_is_down_in_left;
  using KV_Ondex_Menu_View::mouse_is_down_in_right;
  using KV_Ondex_Menu_View::right_rect;
  using KV_Ondex_Menu_View::title_string_attributes;
};

Ref<NSString> text(std::string_view of) {
  return make<NSString>(of);
}

class MenuView : public testing::Test {
 protected:
  MenuView() {
    menu->set_menu_button(button.get());
    menu->set_callback_onObject(test::edited_selector, host.get());
    for (const char* title : {"Sine", "Square", "Noise"})
      menu->append_item(text(title).get());
  }
  void click(double x) {
    test::press(*menu, 1, x, height);
    test::lift(*menu);
  }

  Ref<Menu> menu = make<Menu>(frame);
  Ref<NSPopUpButton> button = make<NSPopUpButton>(NSMakeRect(0, 0, 100, 20));
  Ref<RecordingHost> host = make<RecordingHost>();
};

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
  EXPECT_EQ(button->indexOfItemWithTitle("Sine"), 3) << "a title is there once";
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

// Drawing

/// The radial span from colour A to colour B, `s` at a point: t where the point lies on the circle from the
/// one around the middle of the inner edge, as wide as the cap, to the tip. Distances from the inner edge.
double span(double x, double y, double cap, double cap_height) {
  // centre = 0.95 cap t, radius = cap (1 - t): (x - 0.95 cap t)² + y² = cap² (1 - t)²
  const double dy = y - cap_height / 2;
  const double a = cap * cap * (0.95 * 0.95 - 1);
  const double b = -2 * 0.95 * cap * x + 2 * cap * cap;
  const double c = x * x + dy * dy - cap * cap;
  // Of the two roots one lies within the span and the other beyond its tip.
  const double root = std::sqrt(b * b - 4 * a * c);
  const double t = std::min((-b + root) / (2 * a), (-b - root) / (2 * a));
  return t < 0.15 ? t : t * t;
}

Pixel cap_color(double s, bool pressed) {
  const double main = (1 - s) * 0.0425 + s * 0.93;
  const double rest = (1 - s) * 0.0125 + s * 0.25;
  return pressed ? Pixel{main, rest, rest, 1} : Pixel{rest, rest, main, 1};
}

TEST_F(MenuView, IdleCapsGlowBlueTowardsTheirTipsAndAPressedOneRed) {
  menu->select_index(-1);
  for (const bool pressed : {false, true}) {
    if (pressed)
      test::press(*menu, 1, in_left, height);
    menu->select_index(-1);
    const DrawnView drawn(*menu, 4);
    for (const double x : {3.1, 6.1, 9.1, 12.1}) {
      for (const double y : {6.1, 10.1, 15.1}) {
        const double px = drawn.centre(x);
        const double py = drawn.centre(y);
        const Pixel expected = over(test::shine(py, 20), cap_color(span(15 - px, py, 15, 20), pressed));
        EXPECT_LE(distance(drawn.at(x, y), expected), 3) << x << ' ' << y << drawn.at(x, y) << expected;
        const double mirrored = 120 - px;
        const Pixel right = over(test::shine(py, 20), cap_color(span(15 - px, py, 15, 20), false));
        EXPECT_LE(distance(drawn.at(mirrored, y), right), 3) << mirrored << ' ' << y;
      }
    }
  }
}

TEST_F(MenuView, TheRightCapIsRedWhileThePressThatBeganThereLasts) {
  test::press(*menu, 1, in_right, height);
  const DrawnView pressed(*menu, 1);
  EXPECT_GT(pressed.at(115, 10).red, 2 * pressed.at(115, 10).blue);
  EXPECT_GT(pressed.at(4, 10).blue, 2 * pressed.at(4, 10).red);
  test::lift(*menu);
  EXPECT_GT(DrawnView(*menu, 1).at(115, 10).blue, 2 * DrawnView(*menu, 1).at(115, 10).red);
}

TEST_F(MenuView, ACapThatCannotBeShadedIsLoggedAndLeftOut) {
  menu->select_index(-1);
  const test::LoggedLines log;
  const test::FailingRgbRecord failure;
  const DrawnView drawn(*menu, 1);
  EXPECT_EQ(log.lines, std::vector<std::string>{test::no_function});
  EXPECT_EQ(drawn.at(4, 3), Pixel{}) << "the left cap comes first";
  EXPECT_GT(drawn.at(116, 10).blue, 0.3);
  EXPECT_LE(distance(drawn.at(60, 10), test::body(10.5, 20)), 1);
}

TEST_F(MenuView, TheBodyAndTheGlassAreThoseOfEveryCapsule) {
  menu->select_index(-1);
  const DrawnView drawn(*menu, 2);
  for (const double y : {1.1, 5.1, 8.1, 10.1, 15.1}) {
    EXPECT_LE(distance(drawn.at(60.1, y), test::body(drawn.centre(y), 20)), 1) << y;
  }
  EXPECT_EQ(drawn.at(0.1, 0.1), Pixel{}) << "beside the ellipse";
}

TEST_F(MenuView, ADarkAndALightLineStandWhereTheCapsMeetTheMiddle) {
  menu->select_index(-1);
  // Quarters of a point: the lines, half a point wide, are two pixels each.
  const DrawnView drawn(*menu, 4);
  const Pixel plain = drawn.at(20.1, 3.1);
  const double t = drawn.centre(3.1);
  const Pixel dark = over({0, 0, 0, 0.25}, plain);
  const Pixel light = over({1, 1, 1, 0.25}, plain);
  EXPECT_LE(distance(plain, test::body(t, 20)), 1);
  for (const double edge : {15.0, 105.0}) {
    const double inwards = edge == 15.0 ? 1 : -1;
    const auto at = [&](double from_edge) { return drawn.at(edge + inwards * from_edge, 3.1); };
    EXPECT_LE(distance(at(0.3), dark), 1.5);
    EXPECT_LE(distance(at(0.7), dark), 1.5);
    EXPECT_LE(distance(at(0.8), light), 1.5);
    EXPECT_LE(distance(at(1.2), light), 1.5);
    EXPECT_LE(distance(at(1.3), plain), 1);
  }
}

TEST_F(MenuView, ShowsTheSelectedTitleUnderTheGlass) {
  menu->remove_all_items();
  menu->append_item(text("\u2588\u2588\u2588").get());  // full blocks: ink without gaps
  menu->set_colors_for_line(NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1).get());
  const DrawnView drawn(*menu, 2);
  double row = 0;
  for (double y = 7; y < 13 && row == 0; y += 0.5) {
    if (drawn.at(60.1, y).red > 0.9)
      row = y;
  }
  ASSERT_NE(row, 0);
  const Pixel expected = over(test::shine(drawn.centre(row), 20), {1, 0, 0, 1});
  EXPECT_LE(distance(drawn.at(60.1, row), expected), 1.5);
}

// On the screen

class MenuViewOnScreen : public MenuView {
 protected:
  MenuViewOnScreen() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(menu.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~MenuViewOnScreen() override { window = nullptr; }
  void turn() {
    const NSAutoreleasePool turn_pool;
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  HeadlessWindow& main_window() { return *system.windows().front(); }
  bool open() { return system.windows().size() == 2; }
  void click_middle() {
    main_window().press(middle);
    turn();
    main_window().release();
    turn();
    clock.advance(2);
  }
  void key(uint32_t keysym) {
    system.keyWindow()->key_down(keysym, "");
    turn();
  }
  size_t redraws_of(const std::function<void()>& action) {
    main_window().clearPresented();
    action();
    turn();
    return main_window().presented().size();
  }

  static constexpr NSPoint middle = {static_cast<CGFloat>(in_middle), static_cast<CGFloat>(height)};
  static constexpr uint32_t key_return = 0xff0d;
  static constexpr uint32_t key_escape = 0xff1b;
  static constexpr uint32_t key_down = 0xff54;
  NSAutoreleasePool pool;
  test::ManualClock clock{1000};
  HeadlessWindowSystem system{clock};
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 200, 400, 300), NSTitledWindowMask);
};

TEST_F(MenuViewOnScreen, TheMiddleOpensTheListOverTheWholeControl) {
  click_middle();
  ASSERT_TRUE(open());
  const NSRect list = system.newestWindow()->frame();
  EXPECT_EQ(NSMinX(list), 320);
  EXPECT_EQ(NSWidth(list), 120);
  EXPECT_EQ(NSMaxY(list), 253) << "the first line's middle, 13 below the top, at 240";
  EXPECT_TRUE(host->edited.empty()) << "the action waits for the list to close";
  key(key_down);
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited, std::vector<NSObject*>{menu.get()});
}

TEST_F(MenuViewOnScreen, ClosingTheListWithoutAChoiceReportsToo) {
  click_middle();
  key(key_escape);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuViewOnScreen, TheReleaseThatChoosesEndsThePress) {
  main_window().press(middle);
  turn();
  EXPECT_TRUE(menu->mouse_is_down);
  main_window().drag_to({middle.x, middle.y - 18});
  turn();
  main_window().release();
  turn();
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_FALSE(menu->mouse_is_down);
}

TEST_F(MenuViewOnScreen, AnEmptyListReportsAtOnce) {
  menu->remove_all_items();
  click_middle();
  EXPECT_FALSE(open());
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuViewOnScreen, TheListMayOutliveTheView) {
  click_middle();
  menu->removeFromSuperview();
  menu = nullptr;
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuViewOnScreen, OnlyWhatSaysSoAsksForARedraw) {
  EXPECT_EQ(redraws_of([&] { menu->set_colors_for_line(NSColor::yellowColor().get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->set_menu_button(button.get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->append_item(text("Saw").get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->insert_item_at_index(text("Dust").get(), 0); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->select_index(1); }), 1U);
  EXPECT_EQ(redraws_of([&] { menu->select_index(77); }), 1U);
  EXPECT_EQ(redraws_of([&] { main_window().press({static_cast<CGFloat>(in_left), middle.y}); }), 1U);
  EXPECT_EQ(redraws_of([&] { main_window().release(); }), 1U);
  EXPECT_EQ(redraws_of([&] { test::press(*menu, 2, in_left, height); }), 1U);
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
