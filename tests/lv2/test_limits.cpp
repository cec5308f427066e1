// SPDX-License-Identifier: MIT
// Hosts that give too much, and machines that have too little.

#include "host_fixture.h"
#include "resource_limit.h"

namespace ondex::test {
namespace {

using test_support::address_space;
using test_support::ResourceLimit;
using testing::IsEmpty;

class Limits : public HostTest {
 protected:
  /// The lower edge of the middle of the editor is drawn in 1280 × 800 pixels of the screen, `scale` of them
  /// a point, with the depth readout at (640, 400).
  void showMiddle(int extent, double scale) {
    const int height = static_cast<int>(editor_height * scale);
    const int top = (extent - height) / 2;
    const int left = static_cast<int>((extent - editor_width * scale) / 2);
    user.resize(parent, extent, extent);
    user.move(parent, 640 - left - static_cast<int>(on_depth.x * scale),
              400 - top - static_cast<int>(on_depth.y * scale));
    user.resize(host.window(), extent, extent);
    user.move(host.window(), 0, 0);
  }
};

class HugeWindows : public Limits, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(, HugeWindows, testing::Values(8000, 16384, 32000),
                         testing::PrintToStringParamName());

TEST_P(HugeWindows, AreDrawnInTheirMiddleAndWorked) {
  open();
  // Of a square as many pixels as a screen of 3840 × 2160 has: 2880 a side.
  constexpr double scale = 2880.0 / editor_width;
  showMiddle(GetParam(), scale);
  constexpr uint32_t of_the_host = 0x204060;
  constexpr uint32_t around_the_content = 0x333333;
  ASSERT_TRUE(host.idleUntil([&] {
    const auto shown = user.pixel(user.root(), 640, 400);
    return shown && *shown != 0 && *shown != of_the_host && *shown != around_the_content;
  }));
  host.idleFor(0.1);
  host.forget();
  user.point(640, 400);
  settle();
  user.press(1);
  settle();
  user.point(640, 400 - static_cast<int>(40 * scale));
  settle();
  user.release(1);
  settle();
  EXPECT_NEAR(host.value(depth_port), 0.7F, 0.01F);
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(Limits, ATitleOfTwentyMegabytesIsShownByItsBeginning) {
  const std::string title(20U << 20U, 'T');
  const LV2_Options_Option option = {LV2_OPTIONS_INSTANCE,
                                     0,
                                     host.number(LV2_UI__windowTitle),
                                     static_cast<uint32_t>(title.size()),
                                     host.number(LV2_ATOM__String),
                                     title.data()};
  ASSERT_TRUE(host.open({.more_options = {option}}));
  host.show();
  EXPECT_TRUE(host.idleUntil([this] { return user.viewable(host.window()); }));
  EXPECT_EQ(host.idle(), 0);
  const std::string shown = user.text_property(host.window(), "_NET_WM_NAME");
  EXPECT_EQ(shown, std::string(shown.size(), 'T'));
  EXPECT_GT(shown.size(), 200U);
}

TEST_F(Limits, AnEditorOpensWhereNoFileMayHaveAByte) {
  const ResourceLimit limit(RLIMIT_FSIZE, 0);
  open();
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

#ifndef ONDEX_SANITIZED

TEST_F(Limits, WithLittleMemoryAnEditorOpensOrIsRefused) {
  parent = makeParent();
  int opened = 0;
  int refused = 0;
  for (uint64_t room = 0; room <= 128U << 20U; room += 4U << 20U) {
    const ResourceLimit limit(RLIMIT_AS, address_space() + room);
    if (host.open({.parent = parent})) {
      ++opened;
      for (int i = 0; i < 3; ++i)
        host.idle();
      host.close();
    } else {
      ++refused;
      EXPECT_TRUE(host.logHas("no memory"));
    }
  }
  EXPECT_GT(opened, 0);
  EXPECT_GT(refused, 0);
}

TEST_F(Limits, AnOpenEditorWaitsForMemory) {
  open();
  const auto before = picture(host.window());
  {
    const ResourceLimit limit(RLIMIT_AS, address_space() + (1U << 20U));
    user.resize(parent, 3 * editor_width, 3 * editor_height);
    user.resize(host.window(), 3 * editor_width, 3 * editor_height);
    host.set(depth_port, 0.9F);
    for (int i = 0; i < 50; ++i)
      EXPECT_EQ(host.idle(), 0);
    EXPECT_NE(host.resize(2 * editor_width, 2 * editor_height), 0);
    EXPECT_TRUE(host.logHas("no memory"));
    EXPECT_EQ(host.log().size(), 1U) << "said once";
  }
  user.resize(host.window(), editor_width, editor_height);
  host.set(depth_port, 0.5F);
  EXPECT_TRUE(host.idleUntil([&] { return picture(host.window()) == before; }));
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 0.2F);
}

TEST_F(Limits, AnOpenEditorSurvivesWhateverMemoryThereIs) {
  open();
  int size = 1;
  for (uint64_t room = 0; room <= 160U << 20U; room += 8U << 20U) {
    const ResourceLimit limit(RLIMIT_AS, address_space() + room);
    size = size % 4 + 1;
    user.resize(parent, size * editor_width, size * editor_height);
    user.resize(host.window(), size * editor_width, size * editor_height);
    for (int i = 0; i < 20; ++i) {
      host.set(depth_port, static_cast<float>(i) / 20);
      host.idleFor(0.002, 1);
    }
    EXPECT_EQ(host.idle(), 0);
  }
}

#endif

}  // namespace
}  // namespace ondex::test
