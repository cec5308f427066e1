// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

/// The bytes of a typed stream, the format of NSArchiver. In short:
///
/// - header: version, signature (which tells the byte order), system version;
/// - a stream is a row of groups: a type string, then one value for each of its letters;
/// - an integer is one signed byte, or a tag and two or four bytes; the letter 'c' is always one raw byte;
/// - a float is a tag and its four bytes; a whole one may stand as an integer;
/// - a string, class or object is written out where it is met first and numbered; later a reference to the
///   number stands for it. Strings have numbers of their own, objects and classes share theirs;
/// - an object is kNew, its class, its groups, kEnd. A class is kNew, name, version, superclass or kNil.

namespace cocoa::typedstream {

inline constexpr uint8_t kStreamerVersion = 4;
inline constexpr std::string_view kLittleEndian = "streamtyped";
inline constexpr std::string_view kBigEndian = "typedstream";
inline constexpr int32_t kSystemVersion = 1000;
/// Every class that we archive is in the first version of its format.
inline constexpr int32_t kClassVersion = 0;

/// A leading byte from kFirstTag to kLastTag is no integer but says what follows.
inline constexpr int8_t kFirstTag = -128;
inline constexpr int8_t kInt16 = -127;
inline constexpr int8_t kInt32 = -126;
inline constexpr int8_t kFloat = -125;
inline constexpr int8_t kNew = -124;
inline constexpr int8_t kNil = -123;
inline constexpr int8_t kEnd = -122;
inline constexpr int8_t kLastTag = -111;
/// The integer that refers to number 0; one more for each further number.
inline constexpr int32_t kFirstReference = -110;

}  // namespace cocoa::typedstream
