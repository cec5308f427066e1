#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cocoa {

bool is_binary_property_list(std::string_view bytes);

/// The same list in XML, for what another system's tools have written: values are shared in the binary form
/// and written out wherever they stand in this one. Fractions of a second in dates are dropped, as XML has
/// none. Nothing when the bytes do not hold together, or hold what XML cannot; `cause` then says why.
std::optional<std::string> xml_from_binary_property_list(std::string_view bytes, std::string& cause);

}  // namespace cocoa
