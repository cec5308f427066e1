// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "audio_unit/private/handles.h"

namespace cocoa::test {
namespace {

struct Name;
using Table = Handles<int, Name>;

TEST(Handles, FindAnObjectUntilItIsRemoved) {
  Table table;
  Name* seven = table.add(std::make_shared<int>(7));
  Name* eight = table.add(std::make_shared<int>(8));
  EXPECT_EQ(*table.find(seven), 7);
  EXPECT_EQ(*table.find(eight), 8);
  EXPECT_EQ(*table.remove(seven), 7);
  EXPECT_EQ(table.find(seven), nullptr);
  EXPECT_EQ(table.remove(seven), nullptr);
  EXPECT_EQ(*table.find(eight), 8);
}

TEST(Handles, AreNeverNullAndNeverGivenTwice) {
  Table table;
  std::set<Name*> given;
  for (int i = 0; i < 2000; ++i) {
    Name* name = table.add(std::make_shared<int>(i));
    EXPECT_NE(name, nullptr);
    EXPECT_TRUE(given.insert(name).second);
    if (i % 3 != 0)
      table.remove(name);
  }
  EXPECT_EQ(table.find(nullptr), nullptr);
}

TEST(Handles, LeaveAnObjectToWhoHasFoundIt) {
  Table table;
  Name* name = table.add(std::make_shared<int>(7));
  const std::shared_ptr<int> found = table.find(name);
  table.remove(name);
  EXPECT_EQ(*found, 7);
}

TEST(Handles, AreListedInTheOrderOfTheirMaking) {
  Table table;
  Name* first = table.add(std::make_shared<int>(1));
  Name* second = table.add(std::make_shared<int>(2));
  Name* third = table.add(std::make_shared<int>(3));
  table.remove(second);
  const auto all = table.all();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].first, first);
  EXPECT_EQ(all[1].first, third);
}

}  // namespace
}  // namespace cocoa::test
