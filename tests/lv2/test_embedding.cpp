// SPDX-License-Identifier: MIT
// How the editor takes its place in a host's window.

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Embedding = HostTest;

TEST_F(Embedding, TheWindowIsMappedAndSizedBeforeInstantiateReturns) {
  parent = makeParent(200, 100, 400, 300);
  ASSERT_TRUE(host.open({.parent = parent}));
  EXPECT_TRUE(user.viewable(host.window()));
  EXPECT_EQ(user.parent_of(host.window()), parent);
  const auto place = user.geometry(host.window());
  EXPECT_EQ(place.width, editor_width);
  EXPECT_EQ(place.height, editor_height);
  EXPECT_THAT(user.children(parent), ElementsAre(host.window()));
  EXPECT_THAT(user.property(host.window(), "_XEMBED_INFO"), ElementsAre(testing::_, 1));
}

TEST_F(Embedding, TheSizeIsAnnouncedOnceAndStandsInTheHints) {
  open();
  EXPECT_THAT(host.announced(), ElementsAre(Pair(editor_width, editor_height)));
  const auto hints = user.property(host.window(), "WM_NORMAL_HINTS");
  ASSERT_EQ(hints.size(), 18U);
  constexpr uint32_t p_size = 8, p_min_size = 16, p_max_size = 32, p_aspect = 128, p_base_size = 256;
  EXPECT_EQ(hints[0] & (p_size | p_min_size | p_max_size | p_aspect | p_base_size),
            p_size | p_min_size | p_aspect | p_base_size);
  EXPECT_EQ(hints[5], 430U) << "minimum";
  EXPECT_EQ(hints[6], 176U);
  EXPECT_EQ(hints[11], 860U) << "aspect";
  EXPECT_EQ(hints[12], 352U);
  EXPECT_EQ(hints[15], 860U) << "base";
  EXPECT_EQ(hints[16], 352U);
}

TEST_F(Embedding, AScaleFactorScalesTheWindowAndWhatIsAnnounced) {
  open({.scale = 1.5F});
  const auto place = user.geometry(host.window());
  EXPECT_EQ(place.width, 1290);
  EXPECT_EQ(place.height, 528);
  EXPECT_THAT(host.announced(), ElementsAre(Pair(1290, 528)));
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(Embedding, NoHostValueBeforeTheFirstIdleIsMissingInTheFirstPicture) {
  open();
  host.set(depth_port, 0.25F);
  host.set(left_index_port, 7);
  host.idleFor(0.2);
  const auto expected = picture(host.window());
  Host second(object.descriptor());
  const xcb_window_t other = makeParent();
  ASSERT_TRUE(second.open({.parent = other}));
  second.set(depth_port, 0.25F);
  second.set(left_index_port, 7);
  second.idle();
  user.sync();
  EXPECT_TRUE(picture(second.window()) == expected);
}

TEST_F(Embedding, HostValuesAreShown) {
  open();
  const auto before = picture(host.window());
  host.set(depth_port, 0.9F);
  host.idleFor(0.15);
  const auto after = picture(host.window());
  EXPECT_FALSE(before == after);
  host.set(depth_port, 0.5F);
  host.idleFor(0.15);
  EXPECT_TRUE(picture(host.window()) == before);
  EXPECT_THAT(host.told(), IsEmpty()) << "and never written";
}

TEST_F(Embedding, NoClickTakesTheFocusFromTheHost) {
  open();
  user.focus(parent);
  drag(on_knob, 0, -40);
  EXPECT_EQ(user.focused(), parent);
}

}  // namespace
}  // namespace ondex::test
