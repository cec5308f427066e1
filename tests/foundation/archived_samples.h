// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "foundation/NSArchiver.h"
#include "foundation/NSCoder.h"

/// Classes to archive and bytes to read back, for the tests and the fuzzer.

namespace cocoa::samples {

/// As much of a colour as its archive holds: a kind and the components that the kind has.
class ArchivedColor : public NSObject {
 public:
  static const Class class_;
  ArchivedColor(int8_t kind, std::vector<float> components)
      : kind_(kind), components_(std::move(components)) {}
  const Class& isa() const override { return class_; }

  int8_t kind() const { return kind_; }
  const std::vector<float>& components() const { return components_; }

  void encodeWithCoder(NSCoder& coder) const override {
    coder.encodeChar(kind_);
    coder.encodeFloats(components_);
  }

 private:
  static Ref<NSObject> initWithCoder(NSCoder& coder) {
    const auto kind = coder.decodeChar();
    if (!kind || *kind < 1 || *kind > 4)
      return nullptr;
    std::vector<float> components(*kind <= 2 ? 4 : 2);
    if (!coder.decodeFloats(components))
      return nullptr;
    return make<ArchivedColor>(*kind, std::move(components));
  }

  int8_t kind_;
  std::vector<float> components_;
};

inline const Class ArchivedColor::class_ = {
    .name = "NSColor", .superclass = &NSObject::class_, .initWithCoder = &ArchivedColor::initWithCoder};

/// Two objects, either of which may be null, the same one twice, or another pair.
class Pair : public NSObject {
 public:
  static const Class class_;
  Pair(Ref<NSObject> first, Ref<NSObject> second) : first_(std::move(first)), second_(std::move(second)) {}
  const Class& isa() const override { return class_; }

  NSObject* first() const { return first_.get(); }
  NSObject* second() const { return second_.get(); }

  void encodeWithCoder(NSCoder& coder) const override {
    coder.encodeObject(first_.get());
    coder.encodeObject(second_.get());
  }

 private:
  static Ref<NSObject> initWithCoder(NSCoder& coder) {
    Ref<NSObject> first = coder.decodeObject();
    Ref<NSObject> second = coder.decodeObject();
    if (coder.failed())
      return nullptr;
    return make<Pair>(std::move(first), std::move(second));
  }

  Ref<NSObject> first_;
  Ref<NSObject> second_;
};

inline const Class Pair::class_ = {
    .name = "Pair", .superclass = &NSObject::class_, .initWithCoder = &Pair::initWithCoder};

inline Ref<NSObject> unarchive(std::vector<uint8_t> bytes) {
  static constexpr const Class* kKnown[] = {&ArchivedColor::class_, &Pair::class_};
  return NSUnarchiver::unarchiveObjectWithData(*make<NSData>(std::move(bytes)), kKnown);
}

inline std::vector<uint8_t> archive(const NSObject& root) {
  const auto data = NSArchiver::archivedDataWithRootObject(root);
  return data ? std::vector<uint8_t>(data->bytes().begin(), data->bytes().end()) : std::vector<uint8_t>();
}

/// The bytes that a text spells: two hexadecimal digits are one byte, 'text' its characters.
inline std::vector<uint8_t> bytes_of(std::string_view spelled) {
  const auto digit = [](char c) { return static_cast<uint8_t>(c <= '9' ? c - '0' : c - 'A' + 10); };
  std::vector<uint8_t> bytes;
  bool is_text = false;
  for (size_t i = 0; i < spelled.size(); ++i) {
    if (spelled[i] == '\'') {
      is_text = !is_text;
    } else if (is_text) {
      bytes.push_back(static_cast<uint8_t>(spelled[i]));
    } else if (spelled[i] != ' ') {
      bytes.push_back(static_cast<uint8_t>(digit(spelled[i]) << 4 | digit(spelled[i + 1])));
      ++i;
    }
  }
  return bytes;
}

inline constexpr std::string_view kLittleEndianHeader = "04 0B 'streamtyped' 81 E8 03 ";
inline constexpr std::string_view kBigEndianHeader = "04 0B 'typedstream' 81 03 E8 ";
/// From the root's type to the end of the class of a colour that comes first in its archive.
inline constexpr std::string_view kFirstColor =
    "84 01 '@' 84 84 84 07 'NSColor' 00 84 84 08 'NSObject' 00 85 ";

inline std::vector<uint8_t> color_bytes(std::string_view contents,
                                        std::string_view header = kLittleEndianHeader) {
  return bytes_of(std::string(header) + std::string(kFirstColor) + std::string(contents));
}

}  // namespace cocoa::samples
