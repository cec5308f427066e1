// SPDX-License-Identifier: MIT
#include "foundation/private/typedstream_writer.h"

#include <bit>
#include <cmath>
#include <limits>

#include "foundation/private/nesting_limit.h"
#include "foundation/private/typedstream.h"

namespace cocoa {

using namespace typedstream;

namespace {

/// Whether an integer can stand for the value. Minus zero, infinities and not-a-number have no integer, and
/// whole values from 2^31 on have none of 32 bits: they keep their own four bytes.
bool is_written_as_integer(float value) {
  constexpr float kLimit = 2147483648.0F;
  const bool is_minus_zero = value == 0.0F && std::signbit(value);
  return value >= -kLimit && value < kLimit && std::trunc(value) == value && !is_minus_zero;
}

template <typename Narrow>
bool fits(int32_t value) {
  return value >= std::numeric_limits<Narrow>::min() && value <= std::numeric_limits<Narrow>::max();
}

}  // namespace

TypedStreamWriter::TypedStreamWriter() {
  writeByte(kStreamerVersion);
  writeString(kLittleEndian);
  writeInteger(kSystemVersion);
}

void TypedStreamWriter::encodeChar(int8_t value) {
  if (failed())
    return;
  writeSharedString("c");
  writeByte(value);
}

void TypedStreamWriter::encodeFloats(std::span<const float> values) {
  if (failed())
    return;
  writeSharedString(std::string(values.size(), 'f'));
  for (const float value : values)
    writeFloat(value);
}

void TypedStreamWriter::encodeObject(const NSObject* object) {
  if (failed())
    return;
  writeSharedString("@");
  writeObject(object);
}

void TypedStreamWriter::writeByte(int8_t byte) {
  bytes_.push_back(static_cast<uint8_t>(byte));
}

void TypedStreamWriter::writeLittleEndian(uint32_t bits, int byte_count) {
  for (int i = 0; i < byte_count; ++i)
    bytes_.push_back(static_cast<uint8_t>(bits >> (8 * i)));
}

void TypedStreamWriter::writeInteger(int32_t value) {
  if (fits<int8_t>(value) && value > kLastTag) {
    writeByte(static_cast<int8_t>(value));
    return;
  }
  const bool is_short = fits<int16_t>(value);
  writeByte(is_short ? kInt16 : kInt32);
  writeLittleEndian(static_cast<uint32_t>(value), is_short ? 2 : 4);
}

void TypedStreamWriter::writeFloat(float value) {
  if (is_written_as_integer(value)) {
    writeInteger(static_cast<int32_t>(value));
    return;
  }
  writeByte(kFloat);
  writeLittleEndian(std::bit_cast<uint32_t>(value), 4);
}

void TypedStreamWriter::writeReference(size_t number) {
  writeInteger(kFirstReference + static_cast<int32_t>(number));
}

void TypedStreamWriter::writeString(std::string_view text) {
  writeInteger(static_cast<int32_t>(text.size()));
  bytes_.insert(bytes_.end(), text.begin(), text.end());
}

void TypedStreamWriter::writeSharedString(std::string_view text) {
  if (const auto known = strings_.find(text); known != strings_.end()) {
    writeReference(known->second);
    return;
  }
  strings_.emplace(text, strings_.size());
  writeByte(kNew);
  writeString(text);
}

void TypedStreamWriter::writeClass(const Class* first) {
  for (const Class* c = first; c; c = c->superclass) {
    const auto [known, is_new] = objects_and_classes_.emplace(c, objects_and_classes_.size());
    if (!is_new) {
      writeReference(known->second);
      return;
    }
    writeByte(kNew);
    writeSharedString(c->name);
    writeInteger(kClassVersion);
  }
  writeByte(kNil);
}

void TypedStreamWriter::writeObject(const NSObject* object) {
  if (!object) {
    writeByte(kNil);
    return;
  }
  if (!object->isa().initWithCoder) {
    fail("an object of a class that is never archived");
    return;
  }
  // The number is taken before the classes take theirs, and before the contents, which may refer back.
  const auto [known, is_new] = objects_and_classes_.emplace(object, objects_and_classes_.size());
  if (!is_new) {
    writeReference(known->second);
    return;
  }
  if (++depth_ > kMaximumDepth) {
    fail("objects are nested too deeply");
    return;
  }
  written_.emplace_back(const_cast<NSObject*>(object));  // only to count the reference
  writeByte(kNew);
  writeClass(&object->isa());
  object->encodeWithCoder(*this);
  writeByte(kEnd);
  --depth_;
}

}  // namespace cocoa
