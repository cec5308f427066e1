// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "foundation/NSGeometry.h"

/// Reference-counted objects, their classes, and the messages that can be sent to them by name.
///
/// Counting is not atomic: an object lives on the thread that made it, as views, colours and strings do.

namespace cocoa {

class NSObject;
class NSString;
class InterfaceDecoder;
class NSCoder;
template <typename T>
class Ref;

/// The name of a message, such as SEL("knob_callback:"). A default-constructed one is null: no message.
class SEL {
 public:
  constexpr SEL() = default;
  /// `name` is a string literal: selectors are named by code and by the class tables, never at run time.
  constexpr explicit SEL(const char* name) : name_(name) {}

  constexpr std::string_view name() const { return name_ ? std::string_view(name_) : std::string_view(); }
  constexpr explicit operator bool() const { return name_ != nullptr; }
  friend constexpr bool operator==(SEL a, SEL b) {
    return (a.name_ == nullptr) == (b.name_ == nullptr) && a.name() == b.name();
  }

 private:
  const char* name_ = nullptr;
};

/// A field of a class that an interface file may set. `set` answers false when the value is of a wrong class.
struct Outlet {
  std::string_view name;
  bool (*set)(NSObject& self, NSObject* value);
};

/// A message of a class that controls may send with themselves as the one argument.
struct Action {
  SEL selector;
  void (*perform)(NSObject& self, NSObject* sender);
};

/// What is known of a class at run time. Every class that is looked up by name, wired from an interface
/// file or is the target of an action has one constant of this type, found through its objects' isa().
struct Class {
  std::string_view name;
  const Class* superclass = nullptr;
  /// alloc and init; null when the class cannot be made without arguments.
  Ref<NSObject> (*init)() = nullptr;
  /// alloc and initWithFrame:; null for classes that are not views.
  Ref<NSObject> (*initWithFrame)(NSRect frame) = nullptr;
  /// Makes an object from its element in an interface file; null when the class is never written there.
  Ref<NSObject> (*initWithInterface)(InterfaceDecoder& decoder) = nullptr;
  /// Makes an object from an archive; null when the class is never archived.
  Ref<NSObject> (*initWithCoder)(NSCoder& coder) = nullptr;
  std::span<const Outlet> outlets = {};
  std::span<const Action> actions = {};

  /// The outlet or action of that name, searched from this class up; null when there is none.
  const Outlet* outlet(std::string_view outlet_name) const;
  const Action* action(std::string_view selector_name) const;
  bool isSubclassOf(const Class& other) const;
};

class NSObject {
 public:
  static const Class class_;

  NSObject() = default;
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;
  virtual ~NSObject();

  virtual const Class& isa() const { return class_; }
  bool isKindOfClass(const Class& other) const { return isa().isSubclassOf(other); }

  void retain() { ++retain_count_; }
  void release();
  /// Releases the object once when the innermost NSAutoreleasePool of this thread drains.
  void autorelease();
  unsigned retainCount() const { return retain_count_; }
  /// Whether its destruction has begun, when nobody can keep it any more.
  bool isGoing() const { return retain_count_ >= going; }

  /// Sends `action` with one argument; logs and does nothing when the class does not have it.
  void performSelector_withObject(SEL action, NSObject* object);

  /// What the object is called; the class name unless a class has something better to say.
  virtual Ref<NSString> description() const;

  /// Called once for every object of an interface file, after all outlets and actions are connected.
  virtual void awakeFromNib() {}

  /// Takes up what the object's element in an interface file says beyond what its initialiser needed, such as
  /// autoresizing and subviews. Sent once to every object of the file, right after it is made. Overriders
  /// call their superclass's; the base class takes nothing.
  virtual void applyInterface(InterfaceDecoder& decoder);

  /// Writes the object into an archive. The base class has nothing to write.
  virtual void encodeWithCoder(NSCoder& coder) const;

 private:
  template <typename T>
  friend class WeakRef;
  /// Cleared when the object goes; made on the first weak reference.
  std::shared_ptr<NSObject*> weak_link_;
  static constexpr unsigned going = 1U << 30;
  unsigned retain_count_ = 1;
};

/// An owning reference: retains on copy, releases when it goes.
template <typename T>
class Ref {
 public:
  constexpr Ref() = default;
  constexpr Ref(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): null is a reference to nothing
  /// Retains `object`.
  Ref(T* object) : object_(object) {  // NOLINT(google-explicit-constructor): as assigning to a field
    if (object_)
      object_->retain();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <typename U>
  requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : Ref(static_cast<T*>(other.get())) {}
  template <typename U>
  requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
  noexcept : object_(other.leak()) {}
  ~Ref() {
    if (object_)
      object_->release();
  }

  /// Takes over the reference that the caller holds.
  static Ref adopt(T* object) {
    Ref ref;
    ref.object_ = object;
    return ref;
  }

  Ref& operator=(const Ref& other) {
    Ref copy(other);
    swap(copy);
    return *this;
  }
  Ref& operator=(Ref&& other) noexcept {
    Ref(std::move(other)).swap(*this);
    return *this;
  }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  void swap(Ref& other) noexcept { std::swap(object_, other.object_); }
  /// Gives the reference to the caller, who must release it.
  [[nodiscard]] T* leak() { return std::exchange(object_, nullptr); }
  /// Gives the reference to the innermost autorelease pool.
  T* autorelease() {
    T* object = leak();
    if (object)
      object->autorelease();
    return object;
  }

  friend bool operator==(const Ref& a, const Ref& b) { return a.object_ == b.object_; }
  friend bool operator==(const Ref& a, const T* b) { return a.object_ == b; }

 private:
  T* object_ = nullptr;
};

/// alloc and init in one: a new object, owned by the result.
template <typename T, typename... Args>
Ref<T> make(Args&&... args) {
  return Ref<T>::adopt(new T(std::forward<Args>(args)...));
}

/// A reference that does not own and becomes null when its object goes.
template <typename T>
class WeakRef {
 public:
  WeakRef() = default;
  WeakRef(T* object) {  // NOLINT(google-explicit-constructor): as assigning to a field
    if (!object)
      return;
    NSObject& base = *object;
    if (!base.weak_link_)
      base.weak_link_ = std::make_shared<NSObject*>(&base);
    link_ = base.weak_link_;
  }
  T* get() const { return link_ ? static_cast<T*>(*link_) : nullptr; }
  explicit operator bool() const { return get() != nullptr; }

 private:
  std::shared_ptr<NSObject*> link_;
};

/// Objects that were autoreleased on this thread while the pool was the innermost one are released when it
/// goes. Every pass of a run loop has one.
class NSAutoreleasePool {
 public:
  NSAutoreleasePool();
  ~NSAutoreleasePool();
  NSAutoreleasePool(const NSAutoreleasePool&) = delete;
  NSAutoreleasePool& operator=(const NSAutoreleasePool&) = delete;

 private:
  friend class NSObject;
  struct Contents;
  std::unique_ptr<Contents> contents_;
  NSAutoreleasePool* outer_;
};

/// The functions of an outlet that is a field of a class, a plain pointer or one that follows its object's
/// life (WeakPointer): FieldOutlet<&KVOndexView::_knob>.
template <auto Member>
struct FieldOutlet;
template <typename Owner, typename Pointer, Pointer Owner::*Member>
struct FieldOutlet<Member> {
  using Value = typename std::pointer_traits<Pointer>::element_type;
  static bool set(NSObject& self, NSObject* value) {
    auto* typed = dynamic_cast<Value*>(value);
    if (value && !typed)
      return false;
    static_cast<Owner&>(self).*Member = typed;
    return true;
  }
  static NSObject* get(const NSObject& self) { return static_cast<const Owner&>(self).*Member; }
};

/// Makes an Action for a method of a class that takes its sender.
template <auto Method>
struct MethodAction;
template <typename Owner, typename Sender, void (Owner::*Method)(Sender*)>
struct MethodAction<Method> {
  static void perform(NSObject& self, NSObject* sender) {
    if constexpr (std::is_same_v<Sender, NSObject>) {
      (static_cast<Owner&>(self).*Method)(sender);
    } else {
      (static_cast<Owner&>(self).*Method)(dynamic_cast<Sender*>(sender));
    }
  }
};

}  // namespace cocoa
