// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// Where a text may be divided, after the rules of Unicode (annexes 14 and 29), which know no languages and
/// no dictionaries. Texts must be valid UTF-8; offsets are in bytes, in order, and end with the text's own.

namespace cocoa {

/// The beginnings of what a reader takes for one character: a letter with its accents, a flag of two code
/// points, a picture of several.
std::vector<size_t> character_breaks(std::string_view utf8);

/// The beginnings of words and of what separates them: blanks, and marks of punctuation one by one.
std::vector<size_t> word_breaks(std::string_view utf8);

/// The beginnings of what may stand on a new line: behind blanks and hyphens, beside dashes and ideographs.
/// Scripts that are written without blanks and need a dictionary are not divided.
std::vector<size_t> line_breaks(std::string_view utf8);

}  // namespace cocoa
