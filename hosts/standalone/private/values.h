// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondex {

/// The shortest decimal text that reads back to the same float.
std::string text_of(float value);

/// The number that is the whole text; no locale, no blanks. None for anything else and for what is not
/// finite.
std::optional<float> float_from(std::string_view text);
std::optional<unsigned> unsigned_from(std::string_view text);

}  // namespace ondex
