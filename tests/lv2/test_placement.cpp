// SPDX-License-Identifier: MIT
// Windows and parents of every kind: other visuals and sizes, moved, resized, of our own.

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::SizeIs;

class Placement : public HostTest {
 protected:
  /// A mapped window with 32-bit pixels.
  xcb_window_t makeTranslucentWindow() {
    xcb_connection_t* c = user.connection();
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    auto depths = xcb_screen_allowed_depths_iterator(screen);
    while (depths.rem && depths.data->depth != 32)
      xcb_depth_next(&depths);
    if (!depths.rem || depths.data->visuals_len == 0)
      return XCB_WINDOW_NONE;
    const xcb_visualid_t visual = xcb_depth_visuals(depths.data)->visual_id;
    const xcb_colormap_t colormap = xcb_generate_id(c);
    xcb_create_colormap(c, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
    const xcb_window_t window = xcb_generate_id(c);
    const std::array<uint32_t, 4> values = {0, 0, 1, colormap};
    xcb_create_window(c, 32, window, screen->root, 50, 60, editor_width, editor_height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
                      values.data());
    user.map(window);
    return window;
  }
  std::vector<uint32_t> pictureIn(const Offer& offer, int width, int height) {
    Host other(object.descriptor());
    Offer here = offer;
    here.parent = makeParent(0, 0, width, height);
    EXPECT_TRUE(other.open(here));
    other.idleFor(0.1);
    auto pixels = picture(other.window());
    other.close();
    user.destroy(*here.parent);
    return pixels;
  }
};

TEST_F(Placement, AParentWithTranslucentPixelsIsLikeAnyOther) {
  const auto expected = pictureIn({}, editor_width, editor_height);
  parent = makeTranslucentWindow();
  ASSERT_NE(parent, xcb_window_t{XCB_WINDOW_NONE});
  ASSERT_TRUE(host.open({.parent = parent}));
  host.idleFor(0.1);
  EXPECT_TRUE(picture(host.window()) == expected);
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Placement, AHostThatMovesWithoutAWordChangesNothing) {
  open();
  point(on_depth);
  settle();
  user.move(parent, 30, 400);
  settle();
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Placement, ResizedByTheHostItIsAsSharpAsAtThatScale) {
  const auto expected = pictureIn({.scale = 1.25F}, 1075, 440);
  open();
  user.resize(parent, 1075, 440);
  user.resize(host.window(), 1075, 440);
  host.idleFor(0.2);
  const auto shown = picture(host.window());
  ASSERT_THAT(shown, SizeIs(expected.size()));
  EXPECT_TRUE(shown == expected);
  // And the controls are where they are shown.
  drag({on_depth.x * 5 / 4, on_depth.y * 5 / 4}, 0, -50);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Placement, TheHostIsToldTheSizeThatTheWindowHas) {
  // 860 · 1.1 is a little more than 946 in binary numbers.
  for (const float scale : {1.1F, 1.2F, 1.35F, 1.37F, 2.3F}) {
    open({.scale = scale});
    const auto place = user.geometry(host.window());
    ASSERT_FALSE(host.announced().empty());
    EXPECT_EQ(host.announced().back(), (std::pair<int, int>{place.width, place.height})) << scale;
    host.close();
    user.destroy(parent);
  }
}

TEST_F(Placement, TheResizeInterfaceDoesTheSame) {
  open();
  user.resize(parent, 1720, 704);
  EXPECT_EQ(host.resize(1720, 704), 0);
  host.idleFor(0.2);
  const auto place = user.geometry(host.window());
  EXPECT_EQ(place.width, 1720);
  EXPECT_EQ(place.height, 704);
  EXPECT_EQ(place.x, 200);
  EXPECT_EQ(place.y, 100);
  EXPECT_THAT(host.announced(), SizeIs(1)) << "not again";
}

TEST_F(Placement, OtherProportionsLeaveMargins) {
  open();
  user.move(parent, 0, 0);
  user.resize(parent, 860, 704);
  user.resize(host.window(), 860, 704);
  host.idleFor(0.2);
  EXPECT_EQ(user.pixel(host.window(), 430, 10), 0x333333U);
  EXPECT_EQ(user.pixel(host.window(), 430, 700), 0x333333U);
  drag({on_depth.x, on_depth.y + 176}, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Placement, TheSmallestOfWindowsIsSurvived) {
  open();
  const auto before = picture(host.window());
  user.resize(host.window(), 1, 1);
  user.resize(parent, 1, 1);
  host.idleFor(0.1);
  host.set(depth_port, 0.9F);
  host.idleFor(0.1);
  host.set(depth_port, 0.5F);
  user.resize(parent, editor_width, editor_height);
  user.resize(host.window(), editor_width, editor_height);
  host.idleFor(0.2);
  EXPECT_TRUE(picture(host.window()) == before);
}

TEST_F(Placement, AParentWithoutRoomIsNoReasonToBeSmall) {
  parent = makeParent(0, 0, 1, 1);
  ASSERT_TRUE(host.open({.parent = parent}));
  host.idleFor(0.1);
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
}

TEST_F(Placement, WithoutAParentItHasAWindowOfItsOwn) {
  const char title[] = "Tremolo of track 3";
  ASSERT_TRUE(host.open({.more_options = {{LV2_OPTIONS_INSTANCE, 0, host.number(LV2_UI__windowTitle),
                                           sizeof title, host.number(LV2_ATOM__String), title}}}));
  EXPECT_EQ(user.parent_of(host.window()), user.root());
  EXPECT_FALSE(user.viewable(host.window())) << "not before it is asked for";
  EXPECT_EQ(user.text_property(host.window(), "WM_NAME"), title);
  EXPECT_EQ(host.idle(), 0);
  EXPECT_EQ(host.show(), 0);
  host.idleFor(0.1);
  EXPECT_TRUE(user.viewable(host.window()));
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
  EXPECT_EQ(host.hide(), 0);
  user.sync();
  EXPECT_FALSE(user.viewable(host.window()));
  EXPECT_EQ(host.show(), 0);
  host.idleFor(0.1);
  EXPECT_TRUE(user.viewable(host.window()));
}

TEST_F(Placement, AWindowOfItsOwnThatTheUserClosesCanBeShownAgain) {
  ASSERT_TRUE(host.open({}));
  ASSERT_EQ(host.show(), 0);
  host.idleFor(0.1);
  user.send_protocol(host.window(), "WM_DELETE_WINDOW");
  ASSERT_TRUE(host.idleUntil([this] { return host.idle() != 0; }));
  EXPECT_EQ(host.hide(), 0);
  EXPECT_EQ(host.show(), 0);
  host.idleFor(0.1);
  EXPECT_EQ(host.idle(), 0);
  EXPECT_TRUE(user.viewable(host.window()));
}

TEST_F(Placement, AParentOfNullIsNoParent) {
  ASSERT_TRUE(host.open({.parent = xcb_window_t{XCB_WINDOW_NONE}}));
  EXPECT_TRUE(host.logHas("the host's parent is no window"));
  EXPECT_EQ(user.parent_of(host.window()), user.root());
}

}  // namespace
}  // namespace ondex::test
