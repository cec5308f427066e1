// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/NSObject.h"

namespace pugi {
struct xml_node_struct;
}

namespace cocoa {

class InterfaceLoad;

/// What a class sees of its element in an interface file while an object is made of it.
///
/// Objects are made in one of three ways: a customObject by Class::init, a customView by
/// Class::initWithFrame, every element that interface files know by itself (view, box, textField ...), with
/// or without a class of its own, by Class::initWithInterface. The new object then gets
/// NSObject::applyInterface once, however it was made: there views take autoresizing and subviews. Both see
/// the same decoder.
///
/// Properties are children of the element with a key, `<rect key="frame" .../>`; attributes are its own. What
/// is absent is answered as such; what is present and malformed also marks the load as failed, so that
/// readers need not check: the result of a failed load is thrown away. Numbers are read without the locale
/// and are finite.
///
/// A decoder is a light handle. It and every view of a text it gives are good until the load is over.
class InterfaceDecoder {
 public:
  /// "textField", "box" ...; empty for a decoder of an absent child.
  std::string_view elementName() const;
  bool exists() const { return node_ != nullptr; }

  std::optional<std::string_view> attribute(const char* name) const;
  /// "YES" or "NO".
  bool boolean(const char* name, bool if_absent) const;
  int64_t integer(const char* name, int64_t if_absent) const;
  double number(const char* name, double if_absent) const;
  /// The index of the attribute's value among `names`; `if_absent` without the attribute. Any other value
  /// fails.
  template <size_t N>
  size_t choice(const char* name, const std::string_view (&names)[N], size_t if_absent) const {
    return choice_of(name, names, N, if_absent);
  }
  /// The object made of the element whose id the attribute holds, such as a menu's selected item; null
  /// without the attribute. It must have been made before.
  NSObject* reference(const char* name) const;

  /// The child with that key, whose attributes can then be read: child("styleMask").boolean("titled", false).
  /// Without such a child, a decoder for which everything is absent.
  InterfaceDecoder child(const char* key) const;
  /// A rectangle in points: origin within ±1e6, extents from 0 to 8192.
  std::optional<NSRect> rect(const char* key) const;
  /// The value of <real key="..."> or <integer key="...">.
  std::optional<double> real(const char* key) const;

  /// The frame that every view must have; fails without one.
  NSRect frame() const;
  /// Bits of NSView's autoresizing mask, from <autoresizingMask key="autoresizingMask" .../>: MinXMargin 1,
  /// WidthSizable 2, MaxXMargin 4, MinYMargin 8, HeightSizable 16, MaxYMargin 32.
  unsigned autoresizingMask() const;

  /// The object made of the child with that key (contentView, cell, font ...), null without such a child or
  /// when it cannot be made. Asking again gives the same object. The caller retains what it keeps.
  Ref<NSObject> object(const char* key) const;
  /// The objects made of the children of a container such as <subviews> or <items>, in document order; those
  /// that cannot be made are left out.
  std::vector<Ref<NSObject>> objects(const char* container) const;
  /// The same, of class T: an object of another class fails.
  template <typename T>
  Ref<T> object_as(const char* key) const {
    return typed<T>(object(key));
  }
  template <typename T>
  std::vector<Ref<T>> objects_as(const char* container) const {
    std::vector<Ref<T>> typed_objects;
    for (const Ref<NSObject>& made : objects(container)) {
      if (Ref<T> object = typed<T>(made))
        typed_objects.push_back(std::move(object));
    }
    return typed_objects;
  }

  /// Marks the whole load as failed because of this element. The first cause is the one that is logged.
  void fail(std::string_view cause) const;

 private:
  friend class InterfaceLoad;
  InterfaceDecoder(InterfaceLoad& load, pugi::xml_node_struct* node) : load_(&load), node_(node) {}

  template <typename T>
  Ref<T> typed(const Ref<NSObject>& object) const {
    T* typed_object = dynamic_cast<T*>(object.get());
    if (object && !typed_object)
      fail_wrong_class(*object, T::class_);
    return typed_object;
  }
  void fail_wrong_class(const NSObject& object, const Class& wanted) const;
  size_t choice_of(const char* name, const std::string_view* names, size_t count, size_t if_absent) const;
  CGFloat coordinate(const char* name, double limit) const;

  InterfaceLoad* load_;
  pugi::xml_node_struct* node_;
};

}  // namespace cocoa
