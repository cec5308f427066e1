// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

bool is_control(char32_t character);
/// Blanks of any width, and the controls that move on.
bool is_space(char32_t character);
/// Marks of punctuation and symbols.
bool is_punctuation(char32_t character);
/// Accents and what else belongs to the character before it.
bool is_mark(char32_t character);
bool is_letter(char32_t character);
bool is_digit(char32_t character);
/// Han, kana, Hangul syllables, pictures: between two of them a line may end anywhere.
bool is_ideograph(char32_t character);
/// A picture in itself, which a joiner may make one picture with another.
bool is_pictograph(char32_t character);
bool is_regional_indicator(char32_t character);

/// The general category of punctuation.
enum class Punctuation { none, connector, dash, open, close, initial_quote, final_quote, other };
Punctuation punctuation_of(char32_t character);

/// Whether the letters of its script run from right to left; false for what belongs to no script.
bool is_right_to_left(char32_t character);
/// Whether it is a letter of a script, whichever its direction.
bool has_script(char32_t character);

}  // namespace cocoa
