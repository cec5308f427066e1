// SPDX-License-Identifier: MIT
#include "unicode/text_breaks.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "unicode/character_classes.h"
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

constexpr char32_t zero_width_joiner = 0x200D;

bool is_one_of(std::u32string_view set, char32_t character) {
  return set.find(character) != std::u32string_view::npos;
}

/// Hangul letters that combine to syllables, and syllables.
enum class Jamo { none, leading, vowel, trailing, open_syllable, closed_syllable };

Jamo jamo_of(char32_t c) {
  if ((c >= 0x1100 && c <= 0x115F) || (c >= 0xA960 && c <= 0xA97C))
    return Jamo::leading;
  if ((c >= 0x1160 && c <= 0x11A7) || (c >= 0xD7B0 && c <= 0xD7C6))
    return Jamo::vowel;
  if ((c >= 0x11A8 && c <= 0x11FF) || (c >= 0xD7CB && c <= 0xD7FB))
    return Jamo::trailing;
  constexpr char32_t first = 0xAC00;
  constexpr char32_t last = 0xD7A3;
  constexpr char32_t trailing_letters = 28;
  if (c < first || c > last)
    return Jamo::none;
  return (c - first) % trailing_letters == 0 ? Jamo::open_syllable : Jamo::closed_syllable;
}

bool is_one_syllable(Jamo a, Jamo b) {
  switch (a) {
    case Jamo::leading:
      return b != Jamo::none && b != Jamo::trailing;
    case Jamo::vowel:
    case Jamo::open_syllable:
      return b == Jamo::vowel || b == Jamo::trailing;
    case Jamo::trailing:
    case Jamo::closed_syllable:
      return b == Jamo::trailing;
    default:
      return false;
  }
}

/// What decides on the next character.
struct CharacterSoFar {
  char32_t base = 0;  ///< its last code point but for marks
  char32_t last = 0;
  bool is_half_flag = false;
};

bool continues(const CharacterSoFar& so_far, char32_t c) {
  if (is_mark(c))
    return !is_control(so_far.last);
  if (so_far.is_half_flag && is_regional_indicator(c))
    return true;
  if (so_far.last == zero_width_joiner && is_pictograph(so_far.base) && is_pictograph(c))
    return true;
  return (so_far.last == '\r' && c == '\n') || is_one_syllable(jamo_of(so_far.last), jamo_of(c));
}

}  // namespace

std::vector<size_t> character_breaks(std::string_view utf8) {
  std::vector<size_t> breaks;
  breaks.reserve(utf8.size() + 1);
  CharacterSoFar so_far;
  for (size_t at = 0; at < utf8.size();) {
    const CodePoint c = code_point_at(utf8, at);
    const bool joins = at > 0 && (c.value >= 0x80 || c.value == '\n') && continues(so_far, c.value);
    if (!joins)
      breaks.push_back(at);
    so_far.is_half_flag = is_regional_indicator(c.value) && !joins;
    so_far.last = c.value;
    if (!joins || !is_mark(c.value))
      so_far.base = c.value;
    at += c.length;
  }
  breaks.push_back(utf8.size());
  return breaks;
}

namespace {

/// A character by what its first code point is in words.
enum class WordClass {
  other,
  space,
  letter,
  digit,
  katakana,
  connector,
  within_letters,
  within_digits,
  within_both
};

WordClass word_class(char32_t c) {
  if (is_one_of(U"'.\u2018\u2019\u2024\uFE52\uFF07\uFF0E", c))
    return WordClass::within_both;
  if (is_one_of(U":\u00B7\u0387\u055F\u05F4\u2027\uFE13\uFE55\uFF1A", c))
    return WordClass::within_letters;
  if (is_one_of(U",;\u037E\u0589\u060C\u060D\u066C\u07F8\u2044\uFE10\uFE14\uFE50\uFE54\uFF0C\uFF1B", c))
    return WordClass::within_digits;
  if (punctuation_of(c) == Punctuation::connector)
    return WordClass::connector;
  if (is_digit(c))
    return WordClass::digit;
  // Between letters that need no blanks, only a dictionary finds words.
  if (is_letter(c) && (!is_ideograph(c) || jamo_of(c) != Jamo::none))
    return WordClass::letter;
  if (is_letter(c) && c >= 0x30A1 && c <= 0x30FF)
    return WordClass::katakana;
  return is_space(c) ? WordClass::space : WordClass::other;
}

bool holds_words_together(WordClass c) {
  return c == WordClass::letter || c == WordClass::digit || c == WordClass::katakana ||
         c == WordClass::connector;
}

bool joins_letters(WordClass c) {
  return c == WordClass::within_letters || c == WordClass::within_both;
}
bool joins_digits(WordClass c) {
  return c == WordClass::within_digits || c == WordClass::within_both;
}

/// Whether two characters belong to one word, given those around them.
bool is_within_word(WordClass before, WordClass a, WordClass b, WordClass after) {
  if (a == WordClass::space && b == WordClass::space)
    return true;
  if ((before == WordClass::letter && joins_letters(a) && b == WordClass::letter) ||
      (a == WordClass::letter && joins_letters(b) && after == WordClass::letter))
    return true;
  if ((before == WordClass::digit && joins_digits(a) && b == WordClass::digit) ||
      (a == WordClass::digit && joins_digits(b) && after == WordClass::digit))
    return true;
  if (!holds_words_together(a) || !holds_words_together(b))
    return false;
  const bool either_is_katakana = a == WordClass::katakana || b == WordClass::katakana;
  return a == WordClass::connector || b == WordClass::connector || !either_is_katakana || a == b;
}

}  // namespace

std::vector<size_t> word_breaks(std::string_view utf8) {
  const std::vector<size_t> characters = character_breaks(utf8);
  std::vector<WordClass> classes;
  classes.reserve(characters.size());
  for (size_t i = 0; i + 1 < characters.size(); ++i)
    classes.push_back(word_class(code_point_at(utf8, characters[i]).value));
  const auto class_at = [&](size_t i) { return i < classes.size() ? classes[i] : WordClass::other; };
  std::vector<size_t> breaks;
  for (size_t i = 0; i < classes.size(); ++i) {
    const WordClass before = i >= 2 ? classes[i - 2] : WordClass::other;
    if (i == 0 || !is_within_word(before, classes[i - 1], classes[i], class_at(i + 1)))
      breaks.push_back(characters[i]);
  }
  breaks.push_back(utf8.size());
  return breaks;
}

namespace {

/// A character by what it means for the end of a line beside it.
enum class LineClass { other, space, break_after, glue, open, close, quote, hyphen, dash, digit, ideograph };

LineClass line_class(char32_t c) {
  if (c == 0x200B)
    return LineClass::break_after;
  if (is_one_of(U"\u00A0\u2007\u202F\u2011\u2060\uFEFF", c))
    return LineClass::glue;
  if (is_space(c))
    return LineClass::space;
  if (is_one_of(U"-\u00AD\u2010\u2012\u2013", c))
    return LineClass::hyphen;
  if (c == 0x2014)
    return LineClass::dash;
  if (is_one_of(U"!,./:;?}\u3001\u3002\u30FB\u30FC\uFF01\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F", c))
    return LineClass::close;
  if (is_one_of(U"\"'", c))
    return LineClass::quote;
  switch (punctuation_of(c)) {
    case Punctuation::open:
      return LineClass::open;
    case Punctuation::close:
      return LineClass::close;
    case Punctuation::initial_quote:
    case Punctuation::final_quote:
      return LineClass::quote;
    default:
      break;
  }
  if (is_digit(c))
    return LineClass::digit;
  return is_ideograph(c) ? LineClass::ideograph : LineClass::other;
}

bool may_end_line(LineClass before, LineClass a, LineClass b) {
  if (a == LineClass::break_after)
    return true;
  if (a == LineClass::glue || b == LineClass::glue || a == LineClass::open || b == LineClass::close ||
      a == LineClass::quote || b == LineClass::quote || b == LineClass::break_after)
    return false;
  if (a == LineClass::dash || b == LineClass::dash)
    return a != b;
  // A hyphen that begins a word is its sign.
  if (a == LineClass::hyphen)
    return b != LineClass::digit && b != LineClass::hyphen && before != LineClass::space;
  if (b == LineClass::hyphen)
    return false;
  return a == LineClass::ideograph || b == LineClass::ideograph;
}

}  // namespace

std::vector<size_t> line_breaks(std::string_view utf8) {
  const std::vector<size_t> characters = character_breaks(utf8);
  std::vector<size_t> breaks;
  LineClass before = LineClass::space;  // of the characters before this one, blanks left out but for these
  LineClass last = LineClass::space;
  LineClass last_ink = LineClass::space;
  for (size_t i = 0; i + 1 < characters.size(); ++i) {
    const LineClass current = line_class(code_point_at(utf8, characters[i]).value);
    if (current == LineClass::space) {
      before = last;
      last = current;
      continue;
    }
    const bool is_first = last_ink == LineClass::space;
    const bool behind_blanks = last == LineClass::space;
    const bool allowed = behind_blanks ? last_ink != LineClass::open && current != LineClass::close
                                       : may_end_line(before, last, current);
    if (!is_first && allowed)
      breaks.push_back(characters[i]);
    before = last;
    last = last_ink = current;
  }
  breaks.push_back(utf8.size());
  return breaks;
}

}  // namespace cocoa
