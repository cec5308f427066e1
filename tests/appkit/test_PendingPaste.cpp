// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/private/pending_paste.h"
#include "windows/headless.h"

namespace cocoa {
namespace {

TEST(PendingPaste, WaitsForTheWindowSystemThatWasAsked) {
  HeadlessWindowSystem system;
  HeadlessWindowSystem other;
  PendingPaste paste;
  EXPECT_FALSE(paste.waitsFor(nullptr));
  paste.begin(&system);
  EXPECT_TRUE(paste.waitsFor(&system));
  EXPECT_FALSE(paste.waitsFor(&other));
  EXPECT_FALSE(paste.waitsFor(nullptr)) << "it has gone";
  paste.end();
  EXPECT_FALSE(paste.waitsFor(&system));
}

TEST(PendingPaste, KnowsTheAnswerToItsLastQuestion) {
  HeadlessWindowSystem system;
  PendingPaste paste;
  const unsigned first = paste.begin(&system);
  const unsigned second = paste.begin(&system);
  EXPECT_FALSE(paste.isNewest(first));
  EXPECT_TRUE(paste.isNewest(second));
}

TEST(PendingPaste, GivesBackInOrderWhatWaits) {
  PendingPaste paste;
  const auto first = make<NSEvent>(WindowEvent{}, nullptr);
  const auto second = make<NSEvent>(WindowEvent{}, nullptr);
  paste.hold(first.get());
  paste.hold(second.get());
  EXPECT_EQ(paste.next().get(), first.get());
  EXPECT_EQ(paste.next().get(), second.get());
  EXPECT_FALSE(paste.next());
}

TEST(PendingPaste, DropsWhatWaits) {
  HeadlessWindowSystem system;
  PendingPaste paste;
  paste.begin(&system);
  EXPECT_FALSE(paste.abandon());
  paste.hold(make<NSEvent>(WindowEvent{}, nullptr).get());
  EXPECT_TRUE(paste.abandon());
  EXPECT_FALSE(paste.next());
  EXPECT_FALSE(paste.waitsFor(&system));
}

}  // namespace
}  // namespace cocoa
