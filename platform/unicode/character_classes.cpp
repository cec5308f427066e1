// SPDX-License-Identifier: MIT
#include "unicode/character_classes.h"

#include <hb.h>

namespace cocoa {

namespace {

hb_unicode_general_category_t category_of(char32_t character) {
  return hb_unicode_general_category(hb_unicode_funcs_get_default(), character);
}

hb_script_t script_of(char32_t character) {
  return hb_unicode_script(hb_unicode_funcs_get_default(), character);
}

}  // namespace

bool is_control(char32_t character) {
  return category_of(character) == HB_UNICODE_GENERAL_CATEGORY_CONTROL;
}

bool is_space(char32_t character) {
  switch (category_of(character)) {
    case HB_UNICODE_GENERAL_CATEGORY_SPACE_SEPARATOR:
    case HB_UNICODE_GENERAL_CATEGORY_LINE_SEPARATOR:
    case HB_UNICODE_GENERAL_CATEGORY_PARAGRAPH_SEPARATOR:
      return true;
    default:
      return character >= '\t' && character <= '\r';
  }
}

bool is_punctuation(char32_t character) {
  switch (category_of(character)) {
    case HB_UNICODE_GENERAL_CATEGORY_CURRENCY_SYMBOL:
    case HB_UNICODE_GENERAL_CATEGORY_MODIFIER_SYMBOL:
    case HB_UNICODE_GENERAL_CATEGORY_MATH_SYMBOL:
    case HB_UNICODE_GENERAL_CATEGORY_OTHER_SYMBOL:
      return true;
    default:
      return punctuation_of(character) != Punctuation::none;
  }
}

bool is_mark(char32_t character) {
  switch (category_of(character)) {
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
      return true;
    default:
      break;
  }
  const bool is_joiner = character == 0x200C || character == 0x200D;
  const bool is_skin_tone = character >= 0x1F3FB && character <= 0x1F3FF;
  const bool is_tag = character >= 0xE0020 && character <= 0xE007F;
  const bool is_half_width_voicing = character == 0xFF9E || character == 0xFF9F;
  const bool is_sara_am = character == 0x0E33 || character == 0x0EB3;
  return is_joiner || is_skin_tone || is_tag || is_half_width_voicing || is_sara_am;
}

bool is_letter(char32_t character) {
  switch (category_of(character)) {
    case HB_UNICODE_GENERAL_CATEGORY_LOWERCASE_LETTER:
    case HB_UNICODE_GENERAL_CATEGORY_MODIFIER_LETTER:
    case HB_UNICODE_GENERAL_CATEGORY_OTHER_LETTER:
    case HB_UNICODE_GENERAL_CATEGORY_TITLECASE_LETTER:
    case HB_UNICODE_GENERAL_CATEGORY_UPPERCASE_LETTER:
    case HB_UNICODE_GENERAL_CATEGORY_LETTER_NUMBER:
      return true;
    default:
      return false;
  }
}

bool is_digit(char32_t character) {
  return category_of(character) == HB_UNICODE_GENERAL_CATEGORY_DECIMAL_NUMBER;
}

bool is_pictograph(char32_t character) {
  const bool lies_among_them =
      (character >= 0x2190 && character <= 0x2BFF) || (character >= 0x1F000 && character <= 0x1FAFF);
  if (!lies_among_them || is_regional_indicator(character))
    return false;
  const hb_unicode_general_category_t category = category_of(character);
  return category == HB_UNICODE_GENERAL_CATEGORY_OTHER_SYMBOL ||
         category == HB_UNICODE_GENERAL_CATEGORY_UNASSIGNED;
}

bool is_ideograph(char32_t character) {
  switch (script_of(character)) {
    case HB_SCRIPT_HAN:
    case HB_SCRIPT_HANGUL:
    case HB_SCRIPT_HIRAGANA:
    case HB_SCRIPT_KATAKANA:
    case HB_SCRIPT_BOPOMOFO:
    case HB_SCRIPT_YI:
      return true;
    default:
      return character >= 0x1F000 && is_pictograph(character);
  }
}

bool is_regional_indicator(char32_t character) {
  return character >= 0x1F1E6 && character <= 0x1F1FF;
}

Punctuation punctuation_of(char32_t character) {
  switch (category_of(character)) {
    case HB_UNICODE_GENERAL_CATEGORY_CONNECT_PUNCTUATION:
      return Punctuation::connector;
    case HB_UNICODE_GENERAL_CATEGORY_DASH_PUNCTUATION:
      return Punctuation::dash;
    case HB_UNICODE_GENERAL_CATEGORY_OPEN_PUNCTUATION:
      return Punctuation::open;
    case HB_UNICODE_GENERAL_CATEGORY_CLOSE_PUNCTUATION:
      return Punctuation::close;
    case HB_UNICODE_GENERAL_CATEGORY_INITIAL_PUNCTUATION:
      return Punctuation::initial_quote;
    case HB_UNICODE_GENERAL_CATEGORY_FINAL_PUNCTUATION:
      return Punctuation::final_quote;
    case HB_UNICODE_GENERAL_CATEGORY_OTHER_PUNCTUATION:
      return Punctuation::other;
    default:
      return Punctuation::none;
  }
}

bool has_script(char32_t character) {
  const hb_script_t script = script_of(character);
  return script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN;
}

bool is_right_to_left(char32_t character) {
  return has_script(character) &&
         hb_script_get_horizontal_direction(script_of(character)) == HB_DIRECTION_RTL;
}

}  // namespace cocoa
