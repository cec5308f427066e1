// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace cocoa {

/// Where a caret may stand in a text and where its words begin and end, by the rules of Unicode: a letter
/// with its accents, or an emoji of several code points, is one step. Offsets are in bytes of UTF-8, which
/// must be valid.
class TextBoundaries {
 public:
  explicit TextBoundaries(std::string_view utf8);

  /// The place of the caret at or before an offset.
  size_t at(size_t offset) const;
  /// The next place towards either end; the end itself from there on.
  size_t before(size_t offset) const;
  size_t after(size_t offset) const;
  /// The beginning of the word at or before the caret, the end of the word at or after it.
  size_t wordStartBefore(size_t offset) const;
  size_t wordEndAfter(size_t offset) const;
  /// The word around the character that begins at an offset; between words, what separates them.
  struct Range {
    size_t start = 0;
    size_t end = 0;
  };
  Range wordAt(size_t offset) const;

 private:
  struct Place {
    size_t offset;
    bool starts_word;
    bool ends_word;
    bool divides;  ///< a boundary between two words, or a word and what separates it
  };
  /// The index of the last place at or before the offset.
  size_t indexOf(size_t offset) const;
  std::vector<Place> places_;  ///< in order; the first is 0, the last the end
};

}  // namespace cocoa
