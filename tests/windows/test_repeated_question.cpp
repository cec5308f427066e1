// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "windows/private/repeated_question.h"

namespace cocoa {
namespace {

TEST(RepeatedQuestion, IsNotAskedAgainBeforeItsAnswer) {
  RepeatedQuestion question(0.25);
  EXPECT_TRUE(question.begin(10));
  EXPECT_FALSE(question.begin(20));
  question.answered();
  EXPECT_TRUE(question.begin(20));
}

TEST(RepeatedQuestion, IsNotAskedTooOften) {
  RepeatedQuestion question(0.25);
  EXPECT_TRUE(question.begin(10));
  question.answered();
  EXPECT_FALSE(question.begin(10.125));
  EXPECT_TRUE(question.begin(10.25));
}

}  // namespace
}  // namespace cocoa
