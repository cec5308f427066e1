// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/NSDictionary.h"
#include "foundation/NSLog.h"
#include "foundation/NSObject.h"
#include "foundation/NSString.h"

namespace cocoa {
namespace {

class Sender : public NSObject {};

class Target : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit Target(bool* gone = nullptr) : gone_(gone) {}
  ~Target() override {
    if (gone_)
      *gone_ = true;
  }

  void pressed(NSObject* sender) { senders.push_back(sender); }

  NSString* caption = nullptr;
  std::vector<NSObject*> senders;

 private:
  bool* gone_;
};

constexpr Outlet target_outlets[] = {{"caption", FieldOutlet<&Target::caption>::set}};
constexpr Action target_actions[] = {{SEL("pressed:"), MethodAction<&Target::pressed>::perform}};
const Class Target::class_ = {
    .name = "Target", .superclass = &NSObject::class_, .outlets = target_outlets, .actions = target_actions};

TEST(NSObject, LivesUntilItsLastOwnerReleasesIt) {
  bool gone = false;
  auto* object = new Target(&gone);
  object->retain();
  EXPECT_EQ(object->retainCount(), 2U);
  object->release();
  EXPECT_FALSE(gone);
  object->release();
  EXPECT_TRUE(gone);
}

TEST(NSObject, AutoreleasedObjectsGoWithThePool) {
  bool gone = false;
  {
    NSAutoreleasePool pool;
    make<Target>(&gone).autorelease();
    EXPECT_FALSE(gone);
  }
  EXPECT_TRUE(gone);
}

TEST(NSObject, AWeakReferenceBecomesNullWhenItsObjectGoes) {
  auto object = make<Target>();
  const WeakRef<Target> weak(object.get());
  EXPECT_EQ(weak.get(), object.get());
  object = nullptr;
  EXPECT_EQ(weak.get(), nullptr);
}

/// Is retained and released once more while it goes, as what it owns does when it sends an action.
class Retained : public NSObject {
 public:
  explicit Retained(int* destructions) : destructions_(destructions) {}
  ~Retained() override {
    if (++*destructions_ > 1)
      return;
    const Ref<Retained> again(self.get());
  }
  WeakRef<Retained> self;

 private:
  int* destructions_;
};

TEST(NSObject, GoesOnceThoughItIsRetainedWhileItGoes) {
  int destructions = 0;
  {
    const auto object = make<Retained>(&destructions);
    object->self = WeakRef<Retained>(object.get());
  }
  EXPECT_EQ(destructions, 1);
}

TEST(SEL, ComparesByNameAndNullIsNoMessage) {
  const std::string same = "pressed:";
  EXPECT_EQ(SEL("pressed:"), SEL(same.c_str()));
  EXPECT_FALSE(SEL("pressed:") == SEL("released:"));
  EXPECT_FALSE(SEL());
  EXPECT_FALSE(SEL() == SEL(""));
}

TEST(NSObject, PerformsAnActionByNameWithTheSenderItself) {
  const auto target = make<Target>();
  const auto sender = make<Sender>();
  target->performSelector_withObject(SEL("pressed:"), sender.get());
  EXPECT_EQ(target->senders, std::vector<NSObject*>{sender.get()});
  EXPECT_TRUE(target->isa().action("pressed:"));
  EXPECT_FALSE(target->isa().action("released:"));
}

TEST(NSObject, LogsAMessageThatItDoesNotUnderstand) {
  std::vector<std::string> log;
  const NSLogHook hook([&](std::string_view line) { log.emplace_back(line); });
  make<Target>()->performSelector_withObject(SEL("released:"), nullptr);
  EXPECT_EQ(log, std::vector<std::string>{"Target does not respond to released:"});
}

TEST(Class, SetsOutletsOfTheRightClassOnly) {
  const auto target = make<Target>();
  const auto caption = make<NSString>("Rate");
  const auto wrong = make<Sender>();
  const Outlet* outlet = Target::class_.outlet("caption");
  ASSERT_NE(outlet, nullptr);
  EXPECT_TRUE(outlet->set(*target, caption.get()));
  EXPECT_EQ(target->caption, caption.get());
  EXPECT_FALSE(outlet->set(*target, wrong.get()));
  EXPECT_EQ(target->caption, caption.get());
  EXPECT_EQ(caption->retainCount(), 1U) << "an outlet does not own";
  EXPECT_EQ(Target::class_.outlet("title"), nullptr);
}

TEST(Class, KnowsItsAncestors) {
  const auto target = make<Target>();
  EXPECT_TRUE(target->isKindOfClass(NSObject::class_));
  EXPECT_FALSE(make<NSObject>()->isKindOfClass(Target::class_));
}

TEST(NSLogHook, TheInnermostHookOfTheThreadHears) {
  std::vector<std::string> outer_log;
  std::vector<std::string> inner_log;
  const NSLogHook outer([&](std::string_view line) { outer_log.emplace_back(line); });
  {
    const NSLogHook inner([&](std::string_view line) { inner_log.emplace_back(line); });
    NSLog("value %d", 7);
  }
  NSLog("plain");
  EXPECT_EQ(inner_log, std::vector<std::string>{"value 7"});
  EXPECT_EQ(outer_log, std::vector<std::string>{"plain"});
}

TEST(NSMutableDictionary, RetainsWhatItHolds) {
  const auto dictionary = make<NSMutableDictionary>();
  const auto value = make<NSString>("v");
  dictionary->setObject_forKey(value.get(), "k");
  dictionary->setObject_forKey(nullptr, "k");
  EXPECT_EQ(dictionary->objectForKey("k"), value.get());
  EXPECT_EQ(value->retainCount(), 2U);
  EXPECT_EQ(dictionary->objectForKey("other"), nullptr);
}

}  // namespace
}  // namespace cocoa
