// SPDX-License-Identifier: MIT
#include "editor_fixture.h"

namespace ondex::test {
namespace {

using namespace cocoa;

class LifecycleTest : public EditorFixture {};

TEST_F(LifecycleTest, TheFactoryFollowsVersionZeroAndHasAName) {
  const auto factory = make<KVOndexViewFactory>();
  EXPECT_EQ(factory->interfaceVersion(), 0U);
  EXPECT_TRUE(factory->description()->isEqualToString("Kelvane: Ondex"));
  EXPECT_EQ(bundle->principalClass(), &KVOndexViewFactory::class_);
  EXPECT_EQ(bundle->classNamed("KVOndexViewFactory"), &KVOndexViewFactory::class_);
}

TEST_F(LifecycleTest, TheFactoryKeepsNoReferenceToItsViews) {
  const auto factory = make<KVOndexViewFactory>();
  Ref<NSView> first;
  Ref<NSView> second;
  {
    const NSAutoreleasePool inner;
    first = factory->uiViewForAudioUnit_withSize(effect.audio_unit(), {});
    EXPECT_EQ(factory->uiFreshlyLoadedView, nullptr);
    second = factory->uiViewForAudioUnit_withSize(effect.audio_unit(), {});
  }
  ASSERT_TRUE(first);
  ASSERT_TRUE(second);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->retainCount(), 1U);
  EXPECT_EQ(second->retainCount(), 1U);
  EXPECT_TRUE(log.empty());
}

TEST_F(LifecycleTest, ControlsGetTheEffectsValuesWhenTheRunLoopDeliversThem) {
  effect.setFromHost(2, 0.25F);
  effect.setFromHost(3, 4.0F);
  editor = make_editor();
  turn();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.5);
  clock.advance(0.049);
  turn();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.5) << "collected for 0.05 s";
  clock.advance(0.002);
  turn();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.25);
  EXPECT_EQ(editor->_tremolo_left_fm_mod_frequency_parameter->current_value(), 4.0);
  EXPECT_TRUE(writes.empty()) << "showing a value writes nothing";
}

TEST_F(LifecycleTest, AttachingTwiceDoesNotDeliverTwice) {
  open();
  AUEventListenerRef first = editor->mAUEventListener;
  ASSERT_NE(first, nullptr);
  editor->setAU(effect.audio_unit());
  EXPECT_NE(editor->mAUEventListener, nullptr);
  EXPECT_NE(AUListenerDispose(first), noErr) << "the first listener is gone already";
  effect.setFromHost(2, 0.75F);
  settle();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.75);
}

TEST_F(LifecycleTest, DetachingLeavesNoListener) {
  open();
  editor->setAU(nullptr);
  EXPECT_EQ(editor->mAU, nullptr);
  EXPECT_EQ(editor->mAUEventListener, nullptr);
  effect.setFromHost(2, 0.75F);
  settle();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.5);
  editor->set_au_parameter_to_value(2, 1.0F);
  EXPECT_EQ(effect.value(2), 0.75F) << "without a unit there is nothing to write to";
}

TEST_F(LifecycleTest, MovingToAWindowChangesNothing) {
  open();
  editor->viewDidMoveToWindow();
  EXPECT_EQ(editor->mAU, effect.audio_unit());
  EXPECT_TRUE(log.empty());
}

TEST_F(LifecycleTest, NothingIsDeliveredToAnEditorThatHasGone) {
  open();
  effect.setFromHost(2, 0.75F);
  editor = nullptr;
  settle();
  EXPECT_TRUE(log.empty());
}

TEST_F(LifecycleTest, AnEffectThatGoesFirstLeavesTheEditorAlone) {
  auto short_lived = std::make_unique<EffectInstance>(effect_parameters());
  open();
  editor->setAU(short_lived->audio_unit());
  short_lived = nullptr;
  settle();
  editor->set_au_parameter_to_value(2, 1.0F);
  editor = nullptr;
}

TEST_F(LifecycleTest, TwoHundredEditorsComeAndGo) {
  for (int i = 0; i < 200; ++i) {
    Ref<KVOndexView> view = make_editor();
    ASSERT_TRUE(view);
    ASSERT_EQ(view->retainCount(), 1U);
    const WeakRef<NSView> weak(view.get());
    view = nullptr;
    ASSERT_EQ(weak.get(), nullptr);
  }
}

TEST_F(LifecycleTest, SeveralEditorsShowOneEffect) {
  open();
  const Ref<KVOndexView> other = make_editor();
  settle();
  editor->_tremolo_depth_parameter->set_current_value(0.125);
  editor->parameter_view_value_edited(editor->_tremolo_depth_parameter);
  settle();
  EXPECT_EQ(other->_tremolo_depth_parameter->current_value(), 0.125);
  ASSERT_EQ(writes.size(), 1U);
}

TEST_F(LifecycleTest, AMissingInterfaceFileIsLoggedAndGivesNoView) {
  const auto elsewhere = make<NSBundle>(source_path("no-such-folder"), bundle_classes());
  EXPECT_FALSE(make_editor());
  ASSERT_EQ(log.size(), 2U);
  EXPECT_NE(log[0].find("KVOndexView"), std::string::npos);
  EXPECT_EQ(log[1], "Ondex: Unable to load nib for view.");
}

}  // namespace
}  // namespace ondex::test
