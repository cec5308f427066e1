// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "foundation/NSClass.h"
#include "foundation/NSString.h"
#include "stand_ins.h"

namespace cocoa::stand_in {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(NSClass, KnowsTheFoundationsOwn) {
  EXPECT_EQ(NSClassFromString("NSObject"), &NSObject::class_);
  EXPECT_EQ(NSClassFromString("NSString"), &NSString::class_);
  EXPECT_EQ(NSClassFromString("NSNothing"), nullptr);
  EXPECT_EQ(NSClassFromString(""), nullptr);
}

TEST(NSClass, IsFoundByNameOnceRegistered) {
  static const Class known = {.name = "RegisteredOnce", .superclass = &NSObject::class_};
  const Class* const list[] = {&known};
  EXPECT_EQ(NSClassFromString("RegisteredOnce"), nullptr);
  NSRegisterClasses(list);
  EXPECT_EQ(NSClassFromString("RegisteredOnce"), &known);
}

TEST(NSClass, IsRegisteredAgainWithoutEffect) {
  static const Class known = {.name = "RegisteredTwice", .superclass = &NSObject::class_};
  const Class* const list[] = {&known, &known};
  const Log log;
  NSRegisterClasses(list);
  NSRegisterClasses(list);
  EXPECT_EQ(NSClassFromString("RegisteredTwice"), &known);
  EXPECT_THAT(log.lines, IsEmpty());
}

TEST(NSClass, KeepsTheFirstOfTwoOfOneName) {
  static const Class first = {.name = "Namesake", .superclass = &NSObject::class_};
  static const Class second = {.name = "Namesake", .superclass = &NSObject::class_};
  const Class* const list[] = {&first, &second};
  const Log log;
  NSRegisterClasses(list);
  EXPECT_EQ(NSClassFromString("Namesake"), &first);
  EXPECT_THAT(log.lines, ElementsAre("Namesake is the name of two classes: the first one stays"));
}

TEST(NSClass, IsRegisteredAndLookedUpFromAnyThread) {
  static const Class known = {.name = "Shared", .superclass = &NSObject::class_};
  const auto use = [] {
    const Class* const list[] = {&known};
    for (int i = 0; i < 1000; ++i) {
      NSRegisterClasses(list);
      EXPECT_EQ(NSClassFromString("Shared"), &known);
    }
  };
  std::thread other(use);
  use();
  other.join();
}

}  // namespace
}  // namespace cocoa::stand_in
