// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondex {

/// Cuts a stream of bytes into lines. What lines cost together grows with their length, not with their
/// number.
class TextLines {
 public:
  /// Appends bytes; complete lines wait until they are taken.
  void append(std::string_view bytes);
  /// The next complete line, without its end; none when there is none. Good until bytes are appended.
  std::optional<std::string_view> take();
  /// True once more has come than any line may be long, without an end.
  bool overlong() const;
  /// Drops it, with all that is still to come of it.
  void drop_overlong();

 private:
  std::string_view pending() const { return std::string_view(bytes_).substr(taken_); }

  std::string bytes_;
  size_t taken_ = 0;  ///< of them
  bool dropping_ = false;
};

}  // namespace ondex
