// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cocoa {

/// The encoding of the oldest kind of text on X servers, whose bytes are the first 256 characters.
inline std::string utf8_of_latin1(std::string_view latin1) {
  std::string utf8;
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xc0U | byte >> 6U);
      utf8 += static_cast<char>(0x80U | (byte & 0x3fU));
    }
  }
  return utf8;
}

/// A question mark for every character that it does not have. The text must be valid.
inline std::string latin1_of_utf8(std::string_view utf8) {
  std::string latin1;
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      latin1 += utf8[i];
    } else if ((lead == 0xc2 || lead == 0xc3) && i + 1 < utf8.size()) {
      latin1 += static_cast<char>((lead & 3U) << 6U | (static_cast<unsigned char>(utf8[++i]) & 0x3fU));
    } else if (lead >= 0xc0) {
      latin1 += '?';
    }
  }
  return latin1;
}

}  // namespace cocoa
