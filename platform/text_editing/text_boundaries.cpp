#include "text_editing/text_boundaries.h"

#include <pango/pango.h>

#include <algorithm>

namespace cocoa {

namespace {
bool belongs_to_word(gunichar character) {
  return !g_unichar_isspace(character) && !g_unichar_ispunct(character);
}
}  // namespace

TextBoundaries::TextBoundaries(std::string_view utf8) {
  const auto bytes = static_cast<int>(utf8.size());
  const auto characters = static_cast<size_t>(g_utf8_strlen(utf8.data(), bytes));
  std::vector<PangoLogAttr> attributes(characters + 1);
  // A fixed language: the boundaries must not change with the host's locale.
  pango_get_log_attrs(utf8.data(), bytes, -1, pango_language_from_string("en"), attributes.data(),
                      static_cast<int>(attributes.size()));
  const char* character = utf8.data();
  bool after_word = false;
  for (size_t i = 0; i <= characters; ++i) {
    const bool is_end = i == 0 || i == characters;
    const bool divides = is_end || attributes[i].is_word_boundary != 0;
    const bool before_word = i < characters && belongs_to_word(g_utf8_get_char(character));
    if (is_end || attributes[i].is_cursor_position) {
      places_.push_back({static_cast<size_t>(character - utf8.data()), divides && before_word,
                         divides && after_word, divides});
    }
    after_word = before_word;
    if (i < characters)
      character = g_utf8_next_char(character);
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
