#pragma once

#include <string>
#include <string_view>

namespace ondex {

/// Cuts a stream of bytes into lines.
class TextLines {
 public:
  /// Appends bytes; complete lines wait until they are taken.
  void append(std::string_view bytes) { pending_ += bytes; }
  /// The next complete line, without its end; false when there is none.
  bool take(std::string& line);
  /// True once more has come than any line may be long, without an end.
  bool overlong() const;
  void drop_overlong() { pending_.clear(); }

 private:
  std::string pending_;
};

}  // namespace ondex
