#pragma once

#include <string>
#include <string_view>

namespace ondex {

/// Cuts a stream of bytes into lines.
class TextLines {
 public:
  /// Appends bytes; complete lines wait until they are taken.
  void append(std::string_view bytes);
  /// The next complete line, without its end; false when there is none.
  bool take(std::string& line);
  /// True once more has come than any line may be long, without an end.
  bool overlong() const;
  /// Drops it, with all that is still to come of it.
  void drop_overlong();

 private:
  std::string pending_;
  bool dropping_ = false;
};

}  // namespace ondex
