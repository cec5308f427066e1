// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "foundation/NSObject.h"

/// Outlets to objects that others own, as the view hierarchy owns the controls of a view.

namespace cocoa {

/// A field that points to an object without owning it, and to nothing once the object has gone.
template <typename T>
class WeakPointer {
 public:
  WeakPointer() = default;
  WeakPointer(T* object) : reference_(object) {}  // NOLINT(google-explicit-constructor): as a plain pointer
  operator T*() const { return get(); }           // NOLINT(google-explicit-constructor): as a plain pointer
  T* operator->() const { return get(); }
  T* get() const { return reference_.get(); }

 private:
  WeakRef<T> reference_;
};

/// An outlet that can be asked what it is connected to.
struct WeakOutlet {
  Outlet outlet;
  NSObject* (*get)(const NSObject& self);
};

template <auto Member>
constexpr WeakOutlet weak_outlet(std::string_view name) {
  return {{name, FieldOutlet<Member>::set}, FieldOutlet<Member>::get};
}

/// For the class's table.
template <size_t N>
constexpr std::array<Outlet, N> outlets_of(const WeakOutlet (&weak_outlets)[N]) {
  std::array<Outlet, N> outlets{};
  for (size_t i = 0; i < N; ++i)
    outlets[i] = weak_outlets[i].outlet;
  return outlets;
}

/// Logs the name of every outlet that refers to nothing.
void log_missing_outlets(const NSObject& self, std::span<const WeakOutlet> weak_outlets);

/// Sends a message to what may be missing: a null receiver does nothing and answers zero.
template <typename Receiver, typename Answer, typename Object, typename... Parameters, typename... Arguments>
Answer send(const Receiver& receiver, Answer (Object::*message)(Parameters...), Arguments&&... arguments) {
  Object* const object = receiver;
  return object ? (object->*message)(std::forward<Arguments>(arguments)...) : Answer();
}

}  // namespace cocoa
