#include "audio_unit/handle_table.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace cocoa {
namespace {

struct Guest {
  explicit Guest(int guest_number, int* farewells = nullptr) : number(guest_number), farewells_(farewells) {}
  Guest(const Guest&) = delete;
  Guest& operator=(const Guest&) = delete;
  ~Guest() {
    number = -1;
    if (farewells_)
      ++*farewells_;
  }
  int number;

 private:
  int* farewells_;
};
struct Name;
using Table = HandleTable<Guest, Name>;

Name* add(Table& table, int number, int* farewells = nullptr) {
  auto guest = std::make_unique<Guest>(number, farewells);
  return table.add(guest);
}

TEST(HandleTable, FindsAnObjectUntilItIsRetired) {
  const auto table = std::make_unique<Table>();
  int farewells = 0;
  Name* name = add(*table, 7, &farewells);
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(table->lease(name)->number, 7);
  EXPECT_EQ(table->lease(name).name(), name);
  EXPECT_TRUE(table->retire(name));
  EXPECT_EQ(farewells, 1);
  EXPECT_FALSE(table->lease(name));
  EXPECT_FALSE(table->retire(name));
  EXPECT_FALSE(table->retire(nullptr));
}

TEST(HandleTable, NeverGivesAHandleTwice) {
  const auto table = std::make_unique<Table>();
  Name* first = add(*table, 1);
  table->retire(first);
  Name* second = add(*table, 2);
  EXPECT_NE(first, second);
  EXPECT_FALSE(table->lease(first));
  EXPECT_FALSE(table->retire(first));
  EXPECT_EQ(table->lease(second)->number, 2);
  table->retire(second);
}

TEST(HandleTable, LeavesAnObjectWithItsOwnerWhenItIsFull) {
  const auto table = std::make_unique<Table>();
  std::vector<Name*> names;
  for (std::size_t i = 0; i < Table::capacity; ++i)
    names.push_back(add(*table, static_cast<int>(i)));
  auto left_over = std::make_unique<Guest>(-5);
  EXPECT_EQ(table->add(left_over), nullptr);
  ASSERT_NE(left_over, nullptr);
  EXPECT_EQ(left_over->number, -5);
  table->retire(names[500]);
  names[500] = table->add(left_over);
  EXPECT_EQ(table->lease(names[500])->number, -5);
  int sum = 0;
  table->forEach([&](const Table::Lease& lease) { sum += lease->number; });
  EXPECT_EQ(sum, 1023 * 1024 / 2 - 500 - 5);
  for (Name* name : names)
    EXPECT_TRUE(table->retire(name));
}

TEST(HandleTable, KeepsAnObjectThatIsRetiredInsideACallOut) {
  const auto table = std::make_unique<Table>();
  int farewells = 0;
  Name* name = add(*table, 7, &farewells);
  {
    const Table::Lease outer = table->lease(name);
    const Table::CallOut outer_call(outer);
    {
      const Table::Lease inner = table->lease(name);
      const Table::CallOut inner_call(inner);
      EXPECT_FALSE(outer.retired());
      EXPECT_TRUE(table->retire(name));
      EXPECT_TRUE(outer.retired());
      EXPECT_FALSE(table->lease(name));
    }
    EXPECT_EQ(farewells, 0);
    EXPECT_EQ(outer->number, 7);
  }
  EXPECT_EQ(farewells, 1);
}

TEST(HandleTable, WaitsForOtherThreadsBeforeItDestroys) {
  const auto table = std::make_unique<Table>();
  std::atomic<Name*> current = add(*table, 7);
  std::atomic<bool> stop = false;
  std::atomic<int> found = 0;
  std::vector<std::thread> readers;
  readers.reserve(3);
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      while (!stop) {
        if (const Table::Lease lease = table->lease(current)) {
          EXPECT_EQ(lease->number, 7);
          ++found;
        }
      }
    });
  }
  for (int i = 0; i < 500 || found == 0; ++i) {
    Name* next = add(*table, 7);
    EXPECT_TRUE(table->retire(current.exchange(next)));
  }
  stop = true;
  for (std::thread& reader : readers)
    reader.join();
  table->retire(current);
}

}  // namespace
}  // namespace cocoa
