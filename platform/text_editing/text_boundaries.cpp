// SPDX-License-Identifier: MIT
#include "text_editing/text_boundaries.h"

#include <algorithm>

#include "unicode/character_classes.h"
#include "unicode/text_breaks.h"
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {
bool belongs_to_word(char32_t character) {
  return !is_space(character) && !is_punctuation(character);
}
}  // namespace

TextBoundaries::TextBoundaries(std::string_view utf8) {
  const std::vector<size_t> words = word_breaks(utf8);
  bool after_word = false;
  for (const size_t offset : character_breaks(utf8)) {
    const bool divides = offset == 0 || std::binary_search(words.begin(), words.end(), offset);
    const bool before_word = offset < utf8.size() && belongs_to_word(code_point_at(utf8, offset).value);
    places_.push_back({offset, divides && before_word, divides && after_word, divides});
    after_word = before_word;
  }
}

size_t TextBoundaries::indexOf(size_t offset) const {
  const auto after =
      std::upper_bound(places_.begin(), places_.end(), offset,
                       [](size_t wanted, const Place& place) { return wanted < place.offset; });
  return static_cast<size_t>(after - places_.begin()) - 1;
}

size_t TextBoundaries::at(size_t offset) const {
  return places_[indexOf(offset)].offset;
}

size_t TextBoundaries::before(size_t offset) const {
  const size_t index = indexOf(offset);
  // From inside a character, its own beginning is the place before.
  if (places_[index].offset < offset)
    return places_[index].offset;
  return index == 0 ? 0 : places_[index - 1].offset;
}

size_t TextBoundaries::after(size_t offset) const {
  const size_t index = indexOf(offset);
  return places_[std::min(index + 1, places_.size() - 1)].offset;
}

size_t TextBoundaries::wordStartBefore(size_t offset) const {
  for (size_t i = indexOf(offset); i > 0; --i) {
    if (places_[i].offset < offset && places_[i].starts_word)
      return places_[i].offset;
  }
  return 0;
}

size_t TextBoundaries::wordEndAfter(size_t offset) const {
  for (size_t i = indexOf(offset) + 1; i < places_.size(); ++i) {
    if (places_[i].ends_word)
      return places_[i].offset;
  }
  return places_.back().offset;
}

TextBoundaries::Range TextBoundaries::wordAt(size_t offset) const {
  // A click behind the last character means that character.
  size_t start = std::min(indexOf(offset), places_.size() > 1 ? places_.size() - 2 : 0);
  size_t end = std::min(start + 1, places_.size() - 1);
  while (start > 0 && !places_[start].divides)
    --start;
  while (end + 1 < places_.size() && !places_[end].divides)
    ++end;
  return {places_[start].offset, places_[end].offset};
}

}  // namespace cocoa
