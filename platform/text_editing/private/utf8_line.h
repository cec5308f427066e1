// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cocoa {

/// What a field of one line takes of a text that comes from outside: valid UTF-8 with replacement characters
/// for other bytes, up to its first line break, tabs as blanks, without other control characters, and no
/// longer than `longest` bytes, cut between characters.
std::string utf8_line(std::string_view text, size_t longest);

}  // namespace cocoa
