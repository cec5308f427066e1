// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stand_ins.h"

namespace cocoa::stand_in {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InterfaceLoad : public ::testing::Test {
 protected:
  InterfaceLoad() { Object::woken.clear(); }
  ~InterfaceLoad() override { Probe::look = nullptr; }
};

TEST_F(InterfaceLoad, MakesTheObjectsOfADocumentAndSetsTheOwnersOutlets) {
  const NSAutoreleasePool pool;
  const Log log;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));
  EXPECT_THAT(log.lines, IsEmpty());

  ASSERT_TRUE(owner->root && owner->left && owner->right && owner->field && owner->panel && owner->well);
  EXPECT_EQ(owner->root->frame_, NSMakeRect(0, 0, 300, 200));
  EXPECT_EQ(owner->left->frame_, NSMakeRect(10, 90, 120, 100));
  EXPECT_EQ(owner->right->frame_, NSMakeRect(150, 90, 120, 100));
  ASSERT_EQ(owner->root->subviews.size(), 4U);
  EXPECT_EQ(owner->root->subviews[0].get(), owner->left);
  EXPECT_EQ(owner->root->subviews[1].get(), owner->right);
  EXPECT_EQ(owner->root->subviews[2].get(), owner->field);
}

TEST_F(InterfaceLoad, GivesPropertiesToTheObjectsThatAskForThem) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));

  const Cell& cell = *owner->field->cell;
  EXPECT_EQ(cell.title, "1.0");
  EXPECT_EQ(cell.formatter->minimum, 0.0);
  EXPECT_EQ(cell.formatter->maximum, 10.0);
  EXPECT_EQ(cell.formatter->fraction_digits, 3);

  const auto* box = dynamic_cast<Box*>(owner->root->subviews[3].get());
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Demo");
  EXPECT_EQ(box->border, 1U);
  EXPECT_EQ(box->content_view->frame_, NSMakeRect(2, 2, 126, 63));

  EXPECT_EQ(owner->panel->content_rect, NSMakeRect(200, 200, 180, 80));
  EXPECT_TRUE(owner->panel->titled);
  EXPECT_TRUE(owner->panel->closable);
  EXPECT_FALSE(owner->panel->released_when_closed);
  EXPECT_EQ(owner->panel->delegate, owner.get());
  EXPECT_EQ(owner->well->color->green, 0.15);
  EXPECT_EQ(owner->well->color->blue, 0.8);
}

TEST_F(InterfaceLoad, ConnectsActionsToTheirTarget) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));
  owner->field->press();
  owner->well->press();
  EXPECT_THAT(owner->fields_changed, ElementsAre(owner->field));
  EXPECT_THAT(owner->wells_changed, ElementsAre(owner->well));
}

TEST_F(InterfaceLoad, WakesObjectsInTheOrderOfTheDocumentAndTheOwnerLast) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));
  const auto* box = static_cast<Box*>(owner->root->subviews[3].get());
  const TextField& field = *owner->field;
  EXPECT_THAT(Object::woken, ElementsAre(owner->root, owner->left, owner->right, &field, field.cell.get(),
                                         field.cell->formatter.get(), box, box->content_view.get(),
                                         owner->panel, owner->panel->content_view.get(), owner->well,
                                         owner->well->color.get(), owner.get()));
}

class OutletReader : public DemoRoot {
 public:
  using DemoRoot::DemoRoot;
  static inline View* partner_when_made = nullptr;
  static inline View* partner_when_woken = nullptr;
  void applyInterface(InterfaceDecoder& decoder) override {
    DemoRoot::applyInterface(decoder);
    partner_when_made = partner;
  }
  void awakeFromNib() override { partner_when_woken = partner; }
};

TEST_F(InterfaceLoad, SetsOutletsAfterMakingAllObjectsAndBeforeWakingAny) {
  const NSAutoreleasePool pool;
  static const Class reader = {
      .name = "OutletReader",
      .superclass = &DemoRoot::class_,
      .initWithFrame = [](NSRect frame) -> Ref<NSObject> { return make<OutletReader>(frame); }};
  const ClassLookup lookup = [](std::string_view name) {
    return name == reader.name ? &reader : class_named(name);
  };
  ASSERT_TRUE(load_interface("Demo.xib", document(R"(
    <customView id="1" customClass="OutletReader"><rect key="frame" x="0" y="0" width="1" height="1"/>
      <connections><outlet property="partner" destination="2" id="3"/></connections></customView>
    <view id="2"><rect key="frame" x="0" y="0" width="7" height="1"/></view>)"),
                             lookup, nullptr));
  EXPECT_EQ(OutletReader::partner_when_made, nullptr);
  ASSERT_NE(OutletReader::partner_when_woken, nullptr);
  EXPECT_EQ(OutletReader::partner_when_woken->frame_.size.width, 7);
}

TEST_F(InterfaceLoad, MakesCustomViewsFromTheirFrameAndKnownViewsFromTheirElement) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));
  EXPECT_FALSE(owner->root->made_from_element);
  EXPECT_TRUE(owner->field->made_from_element);
  EXPECT_EQ(owner->root->applied, 1);
  EXPECT_EQ(owner->field->applied, 1);
  // Pinned to the left and the top: the margins at the right and below may grow.
  EXPECT_EQ(owner->root->mask, 4U | 8U);
  EXPECT_EQ(owner->left->mask, 0U);
}

TEST_F(InterfaceLoad, MakesACustomViewWithoutAClassAPlainView) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(document(R"(
    <customView id="1" customClass="DemoRoot"><rect key="frame" x="0" y="0" width="1" height="1"/>
      <subviews><customView id="2"><rect key="frame" x="0" y="0" width="2" height="3"/></customView></subviews>
    </customView>
    <customObject id="-2"><connections><outlet property="root" destination="1" id="9"/></connections></customObject>)"),
                   owner.get()));
  ASSERT_EQ(owner->root->subviews.size(), 1U);
  EXPECT_EQ(&owner->root->subviews[0]->isa(), &View::class_);
}

TEST_F(InterfaceLoad, LeavesTopLevelObjectsToTheInnermostPool) {
  const auto owner = make<Owner>();
  Ref<DemoRoot> kept;
  {
    const NSAutoreleasePool pool;
    ASSERT_TRUE(load(demo_document, owner.get()));
    EXPECT_EQ(owner->root->retainCount(), 1U);
    kept = owner->root;
  }
  // The window and all that lies in it went with the pool; the view was retained.
  EXPECT_EQ(kept->retainCount(), 1U);
  EXPECT_EQ(kept->subviews.size(), 4U);
  EXPECT_EQ(Object::alive, 1 + 8);
  kept = nullptr;
  EXPECT_EQ(Object::alive, 1);
}

TEST_F(InterfaceLoad, MakesNewObjectsEachTime) {
  const NSAutoreleasePool pool;
  const auto first = make<Owner>();
  const auto second = make<Owner>();
  ASSERT_TRUE(load(demo_document, first.get()));
  ASSERT_TRUE(load(demo_document, second.get()));
  EXPECT_NE(first->root, second->root);
  EXPECT_NE(first->field->cell.get(), second->field->cell.get());
  EXPECT_EQ(second->field->target, second.get());
  EXPECT_EQ(first->field->target, first.get());
}

TEST_F(InterfaceLoad, NeedsNoOwnerWhenNothingIsConnectedToIt) {
  const NSAutoreleasePool pool;
  EXPECT_TRUE(load(document(R"(<customObject id="1" customClass="Probe"/>)")));
  EXPECT_TRUE(load(document("")));
}

TEST_F(InterfaceLoad, GivesTheSameObjectForTheSameChild) {
  const NSAutoreleasePool pool;
  Probe::look = [](InterfaceDecoder& decoder) {
    const auto once = decoder.object("color");
    EXPECT_TRUE(once);
    EXPECT_EQ(decoder.object("color"), once);
    EXPECT_FALSE(decoder.object("font"));
  };
  EXPECT_TRUE(
      load(document(R"(<customObject id="1" customClass="Probe"><color key="color"/></customObject>)")));
}

TEST_F(InterfaceLoad, ReadsAFileThatStartsWithAByteOrderMark) {
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  EXPECT_TRUE(load("\xEF\xBB\xBF" + std::string(demo_document), owner.get()));
}

}  // namespace
}  // namespace cocoa::stand_in
