// SPDX-License-Identifier: MIT
#include "foundation/NSObject.h"

#include <vector>

#include "foundation/NSLog.h"
#include "foundation/NSString.h"

namespace cocoa {

const Class NSObject::class_ = {.name = "NSObject", .init = [] { return make<NSObject>(); }};

const Outlet* Class::outlet(std::string_view outlet_name) const {
  for (const Class* c = this; c; c = c->superclass) {
    for (const Outlet& candidate : c->outlets) {
      if (candidate.name == outlet_name)
        return &candidate;
    }
  }
  return nullptr;
}

const Action* Class::action(std::string_view selector_name) const {
  for (const Class* c = this; c; c = c->superclass) {
    for (const Action& candidate : c->actions) {
      if (candidate.selector.name() == selector_name)
        return &candidate;
    }
  }
  return nullptr;
}

bool Class::isSubclassOf(const Class& other) const {
  for (const Class* c = this; c; c = c->superclass) {
    if (c == &other)
      return true;
  }
  return false;
}

NSObject::~NSObject() {
  if (weak_link_)
    *weak_link_ = nullptr;
}

void NSObject::release() {
  if (--retain_count_ != 0)
    return;
  // What it owns may retain and release it while it goes: that must not destroy it again.
  retain_count_ = going;
  delete this;
}

void NSObject::performSelector_withObject(SEL action, NSObject* object) {
  const Action* found = action ? isa().action(action.name()) : nullptr;
  if (!found) {
    NSLog("%.*s does not respond to %.*s", static_cast<int>(isa().name.size()), isa().name.data(),
          static_cast<int>(action.name().size()), action.name().data());
    return;
  }
  // The action may release its own target.
  const Ref<NSObject> self(this);
  found->perform(*this, object);
}

Ref<NSString> NSObject::description() const {
  return make<NSString>(isa().name);
}

void NSObject::applyInterface(InterfaceDecoder&) {}

void NSObject::encodeWithCoder(NSCoder&) const {}

struct NSAutoreleasePool::Contents {
  std::vector<NSObject*> objects;
};

namespace {
thread_local NSAutoreleasePool* innermost_pool = nullptr;
}

NSAutoreleasePool::NSAutoreleasePool() : contents_(std::make_unique<Contents>()), outer_(innermost_pool) {
  innermost_pool = this;
}

NSAutoreleasePool::~NSAutoreleasePool() {
  // A release may autorelease in turn; what comes while draining goes too.
  while (!contents_->objects.empty()) {
    std::vector<NSObject*> drained;
    drained.swap(contents_->objects);
    for (NSObject* object : drained)
      object->release();
  }
  innermost_pool = outer_;
}

void NSObject::autorelease() {
  if (innermost_pool) {
    innermost_pool->contents_->objects.push_back(this);
  } else {
    NSLog("%.*s autoreleased with no pool in place: it stays", static_cast<int>(isa().name.size()),
          isa().name.data());
  }
}

}  // namespace cocoa
