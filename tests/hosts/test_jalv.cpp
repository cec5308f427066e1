// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <csignal>

#include "jalv.h"

namespace ondex::test {
namespace {

/// jalv embeds the editor through suil, in GTK 3 and in Qt 5.
class Jalv : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override { ASSERT_EQ(desktop.problem(), ""); }

  JalvDesktop desktop;
};

TEST_P(Jalv, ShowsTheHostsValuesAndChangesThemByDragging) {
  const auto jalv = desktop.run(GetParam());
  const auto editors = desktop.editors(1);
  ASSERT_EQ(editors.size(), 1U) << jalv->errors();
  EXPECT_TRUE(desktop.shows(editors[0], {"2=0.25"}));
  EXPECT_TRUE(desktop.plays_depth("Ondex", 0.25));
  desktop.drag_depth(editors[0], 50);
  EXPECT_TRUE(desktop.plays_depth("Ondex", 0.5));
  EXPECT_TRUE(desktop.shows(editors[0], {"2=0.5"}));
  EXPECT_EQ(desktop.close(*jalv, editors[0]), 0) << jalv->errors();
}

TEST_P(Jalv, MovesTheControlsWithAPreset) {
  const auto jalv = desktop.run(GetParam());
  const auto editors = desktop.editors(1);
  ASSERT_EQ(editors.size(), 1U) << jalv->errors();
  EXPECT_TRUE(desktop.shows(editors[0], {"2=0.25"}));
  ASSERT_TRUE(desktop.choose_preset(editors[0]));
  EXPECT_TRUE(desktop.shows(editors[0], {"0=7", "2=0.75", "6=3.5"}));
  EXPECT_TRUE(desktop.plays_depth("Ondex", 0.75));
  EXPECT_EQ(desktop.close(*jalv, editors[0]), 0) << jalv->errors();
}

TEST_P(Jalv, EndsWellWhenItsWindowIsClosed) {
  const auto jalv = desktop.run(GetParam());
  const auto editors = desktop.editors(1);
  ASSERT_EQ(editors.size(), 1U) << jalv->errors();
  EXPECT_TRUE(desktop.shows(editors[0], {"2=0.25"}));
  EXPECT_EQ(desktop.close(*jalv, editors[0]), 0) << jalv->errors();
  EXPECT_TRUE(desktop.editors(0).empty());
}

TEST_P(Jalv, KeepsTwoApartAndLeavesNothingWhenKilled) {
  const auto first = desktop.run(GetParam());
  const auto first_editors = desktop.editors(1);
  ASSERT_EQ(first_editors.size(), 1U) << first->errors();
  EXPECT_TRUE(desktop.shows(first_editors[0], {"2=0.25"}));
  const auto second = desktop.run(GetParam());
  auto both = desktop.editors(2);
  ASSERT_EQ(both.size(), 2U) << second->errors();
  const xcb_window_t second_editor = both[0] == first_editors[0] ? both[1] : both[0];
  desktop.user.raise(desktop.top_level_of(second_editor));
  EXPECT_TRUE(desktop.shows(second_editor, {"2=0.25"}));
  desktop.drag_depth(second_editor, 50);
  EXPECT_TRUE(desktop.plays_depth("Ondex-01", 0.5));
  EXPECT_TRUE(desktop.plays_depth("Ondex", 0.25));

  second->signal(SIGKILL);
  EXPECT_EQ(second->wait_for_exit(), -SIGKILL);
  EXPECT_EQ(desktop.editors(1), first_editors);
  EXPECT_TRUE(desktop.shows(first_editors[0], {"2=0.25"}));
  EXPECT_TRUE(desktop.loses_client("Ondex-01"));
  EXPECT_EQ(desktop.close(*first, first_editors[0]), 0) << first->errors();
}

INSTANTIATE_TEST_SUITE_P(Hosts, Jalv, testing::Values("jalv.gtk3", "jalv.qt5"), [](const auto& host) {
  return std::string(host.param).substr(std::string("jalv.").size());
});

}  // namespace
}  // namespace ondex::test
