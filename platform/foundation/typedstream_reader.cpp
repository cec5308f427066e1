// SPDX-License-Identifier: MIT
#include "foundation/private/typedstream_reader.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "foundation/private/nesting_limit.h"
#include "foundation/private/typedstream.h"

namespace cocoa {

using namespace typedstream;

namespace {
constexpr const char* kTruncated = "the archive ends too early";
}

TypedStreamReader::TypedStreamReader(std::span<const uint8_t> bytes, ClassLookup class_of_name)
    : rest_(bytes), class_of_name_(std::move(class_of_name)) {
  const auto version = static_cast<uint8_t>(takeByte());
  const std::string_view signature = takeString();
  is_big_endian_ = signature == kBigEndian;
  if (version != kStreamerVersion || (!is_big_endian_ && signature != kLittleEndian)) {
    fail("not a typed stream");
    return;
  }
  // Of whichever system wrote it: the format has not changed with it.
  takeInteger();
}

std::optional<int8_t> TypedStreamReader::decodeChar() {
  if (!takeType("c"))
    return std::nullopt;
  const int8_t value = takeByte();
  return failed() ? std::nullopt : std::optional(value);
}

bool TypedStreamReader::decodeFloats(std::span<float> values) {
  const std::string_view type = takeSharedString();
  if (type.size() != values.size() || !std::ranges::all_of(type, [](char c) { return c == 'f'; })) {
    fail("a group of other values than expected");
    return false;
  }
  for (float& value : values)
    value = takeFloat();
  return !failed();
}

Ref<NSObject> TypedStreamReader::decodeObject() {
  if (!takeType("@"))
    return nullptr;
  return takeObject();
}

/// Empty on failure, and always once something has failed.
std::span<const uint8_t> TypedStreamReader::take(size_t count) {
  if (count > rest_.size())
    fail(kTruncated);
  if (failed())
    return {};
  const auto taken = rest_.first(count);
  rest_ = rest_.subspan(count);
  return taken;
}

int8_t TypedStreamReader::takeByte() {
  const auto byte = take(1);
  return byte.empty() ? int8_t{0} : static_cast<int8_t>(byte[0]);
}

uint32_t TypedStreamReader::takeBits(size_t byte_count) {
  const auto bytes = take(byte_count);
  uint32_t bits = 0;
  for (size_t i = 0; i < bytes.size(); ++i)
    bits = (bits << 8U) | bytes[is_big_endian_ ? i : bytes.size() - 1 - i];
  return bits;
}

int32_t TypedStreamReader::integerAfter(int8_t head) {
  if (head > kLastTag)
    return head;
  if (head == kInt16)
    return static_cast<int16_t>(takeBits(2));
  if (head == kInt32)
    return static_cast<int32_t>(takeBits(4));
  fail("a tag where a number belongs");
  return 0;
}

float TypedStreamReader::takeFloat() {
  const int8_t head = takeByte();
  if (head == kFloat)
    return std::bit_cast<float>(takeBits(4));
  return static_cast<float>(integerAfter(head));
}

/// The number that a reference beginning with `head` names, one of `count`.
size_t TypedStreamReader::numberAfter(int8_t head, size_t count) {
  const int64_t number = int64_t{integerAfter(head)} - kFirstReference;
  if (number < 0 || static_cast<size_t>(number) >= count)
    fail("a reference to nothing");
  return failed() ? 0 : static_cast<size_t>(number);
}

std::string_view TypedStreamReader::takeString() {
  const int32_t length = takeInteger();
  if (length < 0)
    fail("a string of negative length");
  const auto bytes = take(static_cast<size_t>(std::max(length, 0)));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string_view TypedStreamReader::takeSharedString() {
  const int8_t head = takeByte();
  if (head == kNew) {
    const std::string_view text = takeString();
    strings_.push_back(text);
    return text;
  }
  const size_t number = numberAfter(head, strings_.size());
  return failed() ? std::string_view() : strings_[number];
}

bool TypedStreamReader::takeType(std::string_view expected) {
  if (takeSharedString() != expected)
    fail("a group of other values than expected");
  return !failed();
}

/// A class with its superclasses; the answer is the first, or null on failure.
const Class* TypedStreamReader::takeClass() {
  std::optional<size_t> first;
  for (int8_t head = takeByte(); head != kNil && !failed(); head = takeByte()) {
    if (head != kNew) {
      // What is referred to has had its superclasses written with it.
      const size_t number = numberAfter(head, numbered_.size());
      first = first.value_or(number);
      break;
    }
    first = first.value_or(numbered_.size());
    const std::string_view name = takeSharedString();
    numbered_.emplace_back(ArchivedClass{class_of_name_(name), takeInteger()});
  }
  if (failed())
    return nullptr;
  const auto* archived = first ? std::get_if<ArchivedClass>(&numbered_[*first]) : nullptr;
  if (!archived) {
    fail("an object without a class");
  } else if (!archived->known || !archived->known->initWithCoder) {
    fail("an object of a class that is not known");
  } else if (archived->version != kClassVersion) {
    fail("an object of a later version of its class");
  }
  return failed() ? nullptr : archived->known;
}

Ref<NSObject> TypedStreamReader::takeObject() {
  const int8_t head = takeByte();
  if (failed() || head == kNil)
    return nullptr;
  if (head == kNew)
    return takeNewObject();
  const size_t number = numberAfter(head, numbered_.size());
  if (failed())
    return nullptr;
  const auto* object = std::get_if<Ref<NSObject>>(&numbered_[number]);
  if (!object)
    fail("a reference to something other than a finished object");
  return object ? *object : nullptr;
}

Ref<NSObject> TypedStreamReader::takeNewObject() {
  if (depth_ == kMaximumDepth) {
    fail("objects are nested too deeply");
    return nullptr;
  }
  ++depth_;
  const size_t number = numbered_.size();
  numbered_.emplace_back(Unfinished{});
  const Class* object_class = takeClass();
  Ref<NSObject> object = object_class ? object_class->initWithCoder(*this) : nullptr;
  if (!object)
    fail("an object that cannot be what the archive says");
  if (takeByte() != kEnd)
    fail("an object with more in it than its class knows");
  --depth_;
  if (failed())
    return nullptr;
  numbered_[number] = object;
  return object;
}

}  // namespace cocoa
