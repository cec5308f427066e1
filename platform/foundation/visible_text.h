#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cocoa {

/// The length of the UTF-8 sequence at the start of `text`, which is not empty; 0 when it is malformed:
/// overlong, a surrogate, beyond U+10FFFF, cut off, or the null character, which ends C strings. Any thread.
size_t utf8_sequence_length(std::string_view text);

/// `text`, which may come from anywhere, fit to be shown in one line of a terminal or a log: every byte that
/// is not part of a printable UTF-8 character is written as in a string of C, such as "\n" and "\x1b".
/// Characters that break a line or turn its direction count as not printable. A backslash stays as it is, so
/// that doing it twice changes nothing more. Any thread.
std::string visible_text(std::string_view text);

}  // namespace cocoa
