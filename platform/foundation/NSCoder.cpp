// SPDX-License-Identifier: MIT
#include "foundation/NSCoder.h"

namespace cocoa {

namespace {
constexpr const char* kDoesNotWrite = "the coder only reads";
constexpr const char* kDoesNotRead = "the coder only writes";
}  // namespace

void NSCoder::fail(const char* cause) {
  if (!failure_)
    failure_ = cause;
}

void NSCoder::encodeChar(int8_t) {
  fail(kDoesNotWrite);
}

void NSCoder::encodeFloats(std::span<const float>) {
  fail(kDoesNotWrite);
}

void NSCoder::encodeObject(const NSObject*) {
  fail(kDoesNotWrite);
}

std::optional<int8_t> NSCoder::decodeChar() {
  fail(kDoesNotRead);
  return std::nullopt;
}

bool NSCoder::decodeFloats(std::span<float>) {
  fail(kDoesNotRead);
  return false;
}

Ref<NSObject> NSCoder::decodeObject() {
  fail(kDoesNotRead);
  return nullptr;
}

}  // namespace cocoa
