// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/NSWindow.h"
#include "drawing/Callback.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::edited_selector;
using test::RecordingHost;
using test::selected_selector;

constexpr NSRect frame = {{0, 0}, {40, 20}};

class CallbackTest : public testing::Test {
 protected:
  Ref<NSView> control = make<NSView>(frame);
  Ref<RecordingHost> host = make<RecordingHost>();
};

TEST_F(CallbackTest, RetainsTheHostAndReleasesItWhenItGoes) {
  {
    Callback callback;
    callback.set(edited_selector, host.get(), *control);
    EXPECT_EQ(host->retainCount(), 2U);
    EXPECT_EQ(callback.host(), host.get());
    EXPECT_EQ(callback.selector(), edited_selector);
  }
  EXPECT_EQ(host->retainCount(), 1U);
}

TEST_F(CallbackTest, ReleasesTheHostThatIsReplaced) {
  const auto other = make<RecordingHost>();
  Callback callback;
  callback.set(edited_selector, host.get(), *control);
  callback.set(selected_selector, other.get(), *control);
  EXPECT_EQ(host->retainCount(), 1U);
  EXPECT_EQ(other->retainCount(), 2U);
  callback.send(control.get());
  EXPECT_TRUE(host->edited.empty());
  EXPECT_EQ(other->selected, std::vector<NSObject*>{control.get()});
}

TEST_F(CallbackTest, TheSameHostMayBeGivenAgain) {
  Callback callback;
  callback.set(edited_selector, host.get(), *control);
  callback.set(edited_selector, host.get(), *control);
  EXPECT_EQ(host->retainCount(), 2U);
}

TEST_F(CallbackTest, ANullSelectorOrHostLeavesThePair) {
  const auto other = make<RecordingHost>();
  Callback callback;
  callback.set(edited_selector, host.get(), *control);
  callback.set(SEL(), other.get(), *control);
  callback.set(selected_selector, nullptr, *control);
  EXPECT_EQ(callback.host(), host.get());
  EXPECT_EQ(callback.selector(), edited_selector);
  EXPECT_EQ(other->retainCount(), 1U);
}

TEST_F(CallbackTest, WithoutAHostSendsNothing) {
  Callback().send(control.get());
}

TEST_F(CallbackTest, AViewThatTheControlLiesInIsNotRetained) {
  const auto parent = make<NSView>(frame);
  const auto grandparent = make<NSView>(frame);
  grandparent->addSubview(parent.get());
  parent->addSubview(control.get());
  const unsigned count = grandparent->retainCount();
  Callback callback;
  callback.set(edited_selector, grandparent.get(), *control);
  EXPECT_EQ(grandparent->retainCount(), count);
  EXPECT_EQ(callback.host(), grandparent.get());
}

TEST_F(CallbackTest, AViewBesideTheControlIsRetained) {
  const auto other = make<NSView>(frame);
  Callback callback;
  callback.set(edited_selector, other.get(), *control);
  EXPECT_EQ(other->retainCount(), 2U);
}

TEST_F(CallbackTest, OutlivesTheViewItLaysIn) {
  Callback callback;
  auto parent = make<NSView>(frame);
  parent->addSubview(control.get());
  callback.set(edited_selector, parent.get(), *control);
  parent = nullptr;
  EXPECT_EQ(callback.host(), nullptr);
  callback.send(control.get());
}

TEST_F(CallbackTest, ItDoesNotMatterWhetherTheCallbackIsSetBeforeTheControlIsPutIntoItsHost) {
  auto parent = make<NSView>(frame);
  const WeakRef<NSView> watched(parent.get());
  Callback callback;
  callback.set(edited_selector, parent.get(), *control);
  EXPECT_EQ(parent->retainCount(), 2U);
  parent->addSubview(control.get());
  EXPECT_EQ(parent->retainCount(), 1U);
  EXPECT_EQ(callback.host(), parent.get());
  parent = nullptr;
  EXPECT_FALSE(watched);
  EXPECT_EQ(callback.host(), nullptr);
}

TEST_F(CallbackTest, WhatLiesAroundTheControlMayBePutIntoTheHostLater) {
  const auto parent = make<NSView>(frame);
  const auto grandparent = make<NSView>(frame);
  Callback callback;
  callback.set(edited_selector, grandparent.get(), *control);
  parent->addSubview(control.get());
  EXPECT_EQ(grandparent->retainCount(), 2U);
  grandparent->addSubview(parent.get());
  EXPECT_EQ(grandparent->retainCount(), 1U);
  parent->removeFromSuperview();
  EXPECT_EQ(grandparent->retainCount(), 2U);
  control->removeFromSuperview();
  EXPECT_EQ(grandparent->retainCount(), 2U);
}

TEST_F(CallbackTest, AControlThatIsTakenOutOfItsHostKeepsIt) {
  auto parent = make<NSView>(frame);
  const WeakRef<NSView> watched(parent.get());
  {
    Callback callback;
    parent->addSubview(control.get());
    callback.set(edited_selector, parent.get(), *control);
    control->removeFromSuperview();
    parent = nullptr;
    EXPECT_TRUE(watched);
    EXPECT_EQ(callback.host(), watched.get());
  }
  EXPECT_FALSE(watched);
}

TEST_F(CallbackTest, AHostThatOnlyItsControlKeptGoesWhenItGetsTheControl) {
  Callback callback;
  auto parent = make<NSView>(frame);
  NSView* const host_view = parent.get();
  const WeakRef<NSView> watched(host_view);
  callback.set(edited_selector, host_view, *control);
  parent = nullptr;
  ASSERT_TRUE(watched);
  host_view->addSubview(control.get());
  EXPECT_FALSE(watched);
  EXPECT_EQ(callback.host(), nullptr);
  EXPECT_EQ(control->superview(), nullptr);
}

TEST_F(CallbackTest, AWindowThatTheControlLiesInIsNotRetained) {
  auto window = make<NSWindow>(frame, NSTitledWindowMask);
  const WeakRef<NSWindow> watched(window.get());
  Callback callback;
  callback.set(edited_selector, window.get(), *control);
  EXPECT_EQ(window->retainCount(), 2U);
  window->setContentView(control.get());
  EXPECT_EQ(window->retainCount(), 1U);
  window->setContentView(make<NSView>(frame).get());
  EXPECT_EQ(window->retainCount(), 2U);
  window->contentView()->addSubview(control.get());
  EXPECT_EQ(window->retainCount(), 1U);
  window = nullptr;
  EXPECT_FALSE(watched);
  EXPECT_EQ(callback.host(), nullptr);
}

TEST_F(CallbackTest, TheHostMayKeepTheControlWithoutShowingIt) {
  auto parent = make<NSView>(frame);
  const auto box = make<NSView>(frame);
  Callback callback;
  callback.set(edited_selector, parent.get(), *control);
  box->addSubview(control.get());
  parent->addSubview(box.get());
  parent = nullptr;
  EXPECT_EQ(callback.host(), nullptr) << "what is left of it is the box";
}

TEST_F(CallbackTest, AHostThatReplacesItselfWhileItIsCalledStaysUntilItReturns) {
  const auto other = make<RecordingHost>();
  Callback callback;
  callback.set(edited_selector, host.get(), *control);
  const WeakRef<RecordingHost> watched(host.get());
  bool alive_afterwards = false;
  host->on_edited = [&] {
    callback.set(selected_selector, other.get(), *control);
    alive_afterwards = watched.get() != nullptr;
  };
  host = nullptr;
  callback.send(control.get());
  EXPECT_TRUE(alive_afterwards);
  EXPECT_EQ(watched.get(), nullptr);
}

}  // namespace
}  // namespace ondex
