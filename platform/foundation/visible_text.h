// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cocoa {

/// `text`, which may come from anywhere, fit to be shown in one line of a terminal or a log: every byte that
/// is not part of a printable UTF-8 character is written as in a string of C, such as "\n" and "\x1b".
/// Characters that break a line or turn its direction count as not printable. A backslash stays as it is, so
/// that doing it twice changes nothing more. Any thread.
std::string visible_text(std::string_view text);

}  // namespace cocoa
