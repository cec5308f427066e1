#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "audio_unit/event_ring.h"

namespace cocoa {
namespace {

SentEvent numbered(std::uint32_t number) {
  return {.order = number};
}

TEST(EventRing, GivesBackWhatItWasGivenInOrder) {
  EventRing ring(4);
  SentEvent event;
  EXPECT_FALSE(ring.pop(event));
  std::uint32_t pushed = 0;
  std::uint32_t popped = 0;
  for (int round = 0; round < 10; ++round) {
    for (int i = 0; i < 3; ++i)
      ASSERT_TRUE(ring.push(numbered(pushed++)));
    for (int i = 0; i < 3; ++i) {
      ASSERT_TRUE(ring.pop(event));
      EXPECT_EQ(event.order, popped);
      EXPECT_EQ(event.ticket, popped);
      ++popped;
    }
    EXPECT_FALSE(ring.pop(event));
  }
  EXPECT_EQ(ring.nextTicket(), 30U);
}

TEST(EventRing, RefusesWhatDoesNotFit) {
  EventRing ring(4);
  for (std::uint32_t i = 0; i < 4; ++i)
    EXPECT_TRUE(ring.push(numbered(i)));
  EXPECT_FALSE(ring.push(numbered(4)));
  SentEvent event;
  EXPECT_TRUE(ring.pop(event));
  EXPECT_TRUE(ring.push(numbered(5)));
  EXPECT_FALSE(ring.push(numbered(6)));
  for (const std::uint32_t expected : {1U, 2U, 3U, 5U}) {
    EXPECT_TRUE(ring.pop(event));
    EXPECT_EQ(event.order, expected);
  }
  EXPECT_FALSE(ring.pop(event));
}

TEST(EventRing, KeepsTheOrderOfEachSender) {
  constexpr std::uint32_t senders = 4;
  constexpr std::uint32_t each = 20000;
  EventRing ring(16);
  std::vector<std::thread> threads;
  for (std::uint32_t sender = 0; sender < senders; ++sender) {
    threads.emplace_back([&ring, sender] {
      for (std::uint32_t i = 0; i < each; ++i) {
        while (!ring.push(numbered(i * senders + sender)))
          std::this_thread::yield();
      }
    });
  }
  std::vector<std::uint32_t> next(senders, 0);
  for (std::uint32_t taken = 0; taken < senders * each;) {
    SentEvent event;
    if (!ring.pop(event)) {
      std::this_thread::yield();
      continue;
    }
    ++taken;
    EXPECT_EQ(*event.order / senders, next[*event.order % senders]++);
  }
  for (std::thread& thread : threads)
    thread.join();
}

}  // namespace
}  // namespace cocoa
