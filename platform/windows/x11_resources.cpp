// SPDX-License-Identifier: MIT
#include "windows/private/x11_resources.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace cocoa {

namespace {
constexpr std::string_view blanks = " \t";

std::string_view without_leading_blanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text;
}

/// The value of an "Xft.dpi: 120" line; 0 for another line or no number.
double dpi_of_line(std::string_view line) {
  constexpr std::string_view key = "Xft.dpi";
  line = without_leading_blanks(line);
  if (!line.starts_with(key))
    return 0;
  line = without_leading_blanks(line.substr(key.size()));
  if (!line.starts_with(':'))
    return 0;
  line = without_leading_blanks(line.substr(1));
  double dpi = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), dpi);
  return error == std::errc() ? dpi : 0;
}
}  // namespace

double scale_of_resources(std::string_view resources) {
  double dpi = 0;
  while (!resources.empty()) {
    const size_t end = std::min(resources.find('\n'), resources.size());
    if (const double found = dpi_of_line(resources.substr(0, end)); found > 0)
      dpi = found;
    resources.remove_prefix(std::min(end + 1, resources.size()));
  }
  return dpi > 0 ? std::clamp(dpi / 96, 1.0, 3.0) : 1.0;
}

int rows_a_request(int width, size_t longest_request) {
  // Requests beyond 256 kB carry four more bytes of length.
  constexpr size_t header = sizeof(xcb_put_image_request_t) + sizeof(uint32_t);
  const size_t room = longest_request * 4;
  const size_t row = static_cast<size_t>(std::max(width, 1)) * 4;
  const size_t rows = room > header ? (room - header) / row : 0;
  return static_cast<int>(std::clamp<size_t>(rows, 1, std::numeric_limits<int16_t>::max()));
}

}  // namespace cocoa
