// SPDX-License-Identifier: MIT
#include "foundation/UniqueFd.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace cocoa {
namespace {

bool is_open(int descriptor) {
  return fcntl(descriptor, F_GETFD) >= 0;
}

UniqueFd opened() {
  return UniqueFd(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

TEST(UniqueFd, ClosesWhatItOwnsWhenItGoes) {
  int number = -1;
  {
    const UniqueFd owner = opened();
    ASSERT_TRUE(owner);
    number = owner.get();
    EXPECT_TRUE(is_open(number));
  }
  EXPECT_FALSE(is_open(number));
}

TEST(UniqueFd, HandsOnWhatItOwns) {
  UniqueFd first = opened();
  const int number = first.get();
  UniqueFd second = opened();
  const int replaced = second.get();
  second = std::move(first);
  EXPECT_EQ(second.get(), number);
  EXPECT_FALSE(is_open(replaced));
  const int released = second.release();
  EXPECT_EQ(released, number);
  EXPECT_FALSE(second);
  EXPECT_TRUE(is_open(number)) << "it is the caller's now";
  close(released);
}

TEST(UniqueFd, OwnsNothingAfterACallThatFailed) {
  const UniqueFd none(open("/nowhere/at/all", O_RDONLY | O_CLOEXEC));
  EXPECT_FALSE(none);
  EXPECT_FALSE(UniqueFd());
}

}  // namespace
}  // namespace cocoa
