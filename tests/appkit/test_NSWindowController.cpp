// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>

#include "appkit/NSApplication.h"
#include "appkit/NSWindowController.h"
#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"
#include "temporary_folder.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PaletteController : public NSWindowController {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  PaletteController() : NSWindowController("Palette") {}
  void windowWillLoad() override { steps.emplace_back("will load"); }
  void awakeFromNib() override { steps.emplace_back("awake"); }
  void windowDidLoad() override { steps.emplace_back(window() ? "did load" : "did load nothing"); }
  std::vector<std::string> steps;
};

const Class PaletteController::class_ = {.name = "PaletteController",
                                         .superclass = &NSWindowController::class_};

constexpr std::string_view palette_attributes =
    R"(title="Palette" releasedWhenClosed="YES" visibleAtLaunch="NO")";
constexpr std::string_view palette_style = R"(titled="YES" closable="YES")";

class WindowControllerTest : public WindowFixture {
 protected:
  WindowControllerTest() {
    NSApplicationLoad();
    write(document(palette_attributes, palette_style));
  }
  void write(const std::string& text) const { std::ofstream(folder.path() / "Palette.xib") << text; }
  static std::string document(
      std::string_view attributes, std::string_view style,
      std::string_view connection = R"(<outlet property="window" destination="w"/>)") {
    return R"(<?xml version="1.0"?><document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"><objects>
      <customObject id="-2" customClass="PaletteController"><connections>)" +
           std::string(connection) + R"(</connections></customObject>
      <window )" +
           std::string(attributes) + R"( id="w"><windowStyleMask key="styleMask" )" + std::string(style) +
           R"(/><rect key="contentRect" x="20" y="30" width="120" height="80"/>
        <view key="contentView" id="c"><rect key="frame" x="0" y="0" width="120" height="80"/>
          <subviews><customView id="v"><rect key="frame" x="5" y="5" width="10" height="10"/></customView>
        </subviews></view></window></objects></document>)";
  }

  ondex::test::TemporaryFolder folder;
  std::vector<std::string> log;
  NSLogHook hook{[this](std::string_view line) { log.emplace_back(line); }};
  static constexpr const Class* classes[] = {&PaletteController::class_};
  Ref<NSBundle> bundle = make<NSBundle>(folder.path().string(), classes);
  const WindowSystemScope scope{&system};
};

TEST_F(WindowControllerTest, LoadsItsWindowWhenItIsFirstAskedFor) {
  const auto controller = make<PaletteController>();
  EXPECT_FALSE(controller->isWindowLoaded());
  EXPECT_THAT(controller->steps, IsEmpty());
  NSWindow* window = controller->window();
  ASSERT_TRUE(window);
  EXPECT_THAT(controller->steps, ElementsAre("will load", "awake", "did load"));
  EXPECT_EQ(window->title(), "Palette");
  EXPECT_EQ(window->frame(), NSMakeRect(20, 30, 120, 80));
  EXPECT_EQ(window->contentView()->subviews().size(), 1U);
  EXPECT_TRUE(window->canBecomeKeyWindow()) << "it has a title";
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(controller->window(), window);
  EXPECT_EQ(controller->steps.size(), 3U);
}

TEST_F(WindowControllerTest, IsTheOneThatKeepsTheWindow) {
  const auto controller = make<PaletteController>();
  controller->showWindow(nullptr);
  EXPECT_EQ(controller->window()->retainCount(), 1U);
  EXPECT_FALSE(controller->window()->isReleasedWhenClosed());
  controller->close();
  controller->close();
  EXPECT_EQ(controller->window()->retainCount(), 1U);
}

TEST_F(WindowControllerTest, ShowsTheWindowInFrontAndGivesItTheKeys) {
  const auto controller = make<PaletteController>();
  controller->showWindow(nullptr);
  turn();
  EXPECT_EQ(system.windows().size(), 1U);
  EXPECT_TRUE(controller->window()->isKeyWindow());
  controller->showWindow(nullptr);
  EXPECT_EQ(system.windows().size(), 1U);
}

TEST_F(WindowControllerTest, ShowsItForTheWindowOfTheViewThatAsks) {
  const auto asking = make<NSWindow>(NSMakeRect(0, 0, 400, 300), NSTitledWindowMask);
  asking->orderFront(nullptr);
  const auto controller = make<PaletteController>();
  controller->showWindow(asking->contentView());
  EXPECT_EQ(controller->window()->ownerWindow(), asking.get());
  // A view that is in no window asks for itself alone.
  controller->showWindow(make<NSView>(NSRect{}).get());
  EXPECT_EQ(controller->window()->ownerWindow(), asking.get());
}

TEST_F(WindowControllerTest, ClosesTheWindowWhenItGoes) {
  auto controller = make<PaletteController>();
  controller->showWindow(nullptr);
  const Ref<NSWindow> window(controller->window());
  controller = nullptr;
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(window->retainCount(), 1U);
}

TEST_F(WindowControllerTest, WithoutItsFileItHasNoWindowAndSaysWhy) {
  std::filesystem::remove(folder.path() / "Palette.xib");
  const auto controller = make<PaletteController>();
  controller->showWindow(nullptr);
  EXPECT_FALSE(controller->isWindowLoaded());
  EXPECT_THAT(controller->steps, ElementsAre("will load"));
  EXPECT_THAT(log, ElementsAre(HasSubstr("Palette.xib")));
  // It may have been repaired.
  write(document(palette_attributes, palette_style));
  controller->showWindow(nullptr);
  EXPECT_TRUE(controller->isWindowLoaded());
}

TEST_F(WindowControllerTest, AFileThatConnectsNoWindowIsRefused) {
  // One that is released when it closes would wait for that.
  write(document(R"(title="Palette" releasedWhenClosed="NO" visibleAtLaunch="NO")", palette_style, ""));
  const auto controller = make<PaletteController>();
  EXPECT_EQ(controller->window(), nullptr);
  EXPECT_THAT(log, ElementsAre(HasSubstr("connects no window")));
  EXPECT_TRUE(system.windows().empty());
}

TEST_F(WindowControllerTest, ABrokenFileLeavesNothingBehind) {
  write(document(palette_attributes, R"(titled="perhaps")"));
  const auto controller = make<PaletteController>();
  EXPECT_EQ(controller->window(), nullptr);
  EXPECT_THAT(log, ElementsAre(HasSubstr("titled=\"perhaps\"")));
}

TEST_F(WindowControllerTest, WithoutABundleItHasNoWindow) {
  bundle = nullptr;
  const auto controller = make<PaletteController>();
  EXPECT_EQ(controller->window(), nullptr);
  EXPECT_THAT(log, ElementsAre(HasSubstr("PaletteController: there is no bundle")));
}

TEST_F(WindowControllerTest, AStyleThatIsNotOfferedIsRefused) {
  write(document(palette_attributes, R"(titled="YES" resizable="YES")"));
  EXPECT_EQ(make<PaletteController>()->window(), nullptr);
  EXPECT_THAT(log, ElementsAre(HasSubstr("resizable")));
}

TEST_F(WindowControllerTest, AWindowWithoutContentRectIsRefused) {
  std::string text = document(palette_attributes, palette_style);
  text.replace(text.find("contentRect"), 11, "screenRect");
  write(text);
  EXPECT_EQ(make<PaletteController>()->window(), nullptr);
  EXPECT_THAT(log, ElementsAre(HasSubstr("contentRect")));
}

// Windows of a file without a controller.

TEST_F(WindowControllerTest, WithoutASayAWindowShowsAtLaunchAndGoesWhenClosed) {
  write(document("", "", ""));
  {
    const NSAutoreleasePool loading;
    ASSERT_TRUE(bundle->loadNibNamed_owner("Palette", make<PaletteController>().get()));
  }
  ASSERT_EQ(system.windows().size(), 1U);
  EXPECT_EQ(shown().kind(), WindowKind::popup) << "without a style it has no frame";
  shown().requestClose();
  turn();
  EXPECT_TRUE(system.windows().empty());
}

}  // namespace
}  // namespace cocoa
