// SPDX-License-Identifier: MIT
#include "foundation/InterfaceDecoder.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <pugixml.hpp>

#include "foundation/decimal_text.h"
#include "foundation/private/InterfaceLoad.h"

namespace cocoa {

namespace {

/// Keeps what is laid out from such numbers within exact integers of a 32-bit CGFloat.
constexpr double largest_coordinate = 1e6;

/// In points: more than the largest screens have. What is as large as a coordinate may be would take hours to
/// draw and more memory than there is.
constexpr double largest_extent = 8192;

std::optional<int64_t> parse_integer(std::string_view text) {
  int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || parsed != end)
    return std::nullopt;
  return value;
}

std::string not_a(std::string_view name, std::string_view value, std::string_view what) {
  return std::string(name) + "=\"" + std::string(value) + "\" is not " + std::string(what);
}

}  // namespace

void InterfaceDecoder::fail(std::string_view cause) const {
  load_->fail(pugi::xml_node(node_), cause);
}

void InterfaceDecoder::fail_wrong_class(const NSObject& object, const Class& wanted) const {
  fail("holds a " + std::string(object.isa().name) + " where a " + std::string(wanted.name) + " belongs");
}

std::string_view InterfaceDecoder::elementName() const {
  return pugi::xml_node(node_).name();
}

std::optional<std::string_view> InterfaceDecoder::attribute(const char* name) const {
  const pugi::xml_attribute found = pugi::xml_node(node_).attribute(name);
  return found ? std::optional<std::string_view>(found.value()) : std::nullopt;
}

bool InterfaceDecoder::boolean(const char* name, bool if_absent) const {
  static constexpr std::string_view values[] = {"NO", "YES"};
  return choice(name, values, if_absent ? 1 : 0) == 1;
}

int64_t InterfaceDecoder::integer(const char* name, int64_t if_absent) const {
  const auto text = attribute(name);
  if (!text)
    return if_absent;
  const auto value = parse_integer(*text);
  if (!value)
    fail(not_a(name, *text, "an integer"));
  return value.value_or(if_absent);
}

double InterfaceDecoder::number(const char* name, double if_absent) const {
  const auto text = attribute(name);
  if (!text)
    return if_absent;
  const auto value = number_from_decimal<double>(*text);
  if (!value || !std::isfinite(*value)) {
    fail(not_a(name, *text, "a number"));
    return if_absent;
  }
  return *value;
}

size_t InterfaceDecoder::choice_of(const char* name, const std::string_view* names, size_t count,
                                   size_t if_absent) const {
  const auto text = attribute(name);
  if (!text)
    return if_absent;
  for (size_t i = 0; i < count; ++i) {
    if (names[i] == *text)
      return i;
  }
  fail(not_a(name, *text, "a value that is known here"));
  return if_absent;
}

NSObject* InterfaceDecoder::reference(const char* name) const {
  const auto id = attribute(name);
  if (!id)
    return nullptr;
  NSObject* object = load_->made_object(*id);
  if (!object)
    fail(not_a(name, *id, "an object of this file made so far"));
  return object;
}

InterfaceDecoder InterfaceDecoder::child(const char* key) const {
  return {*load_, pugi::xml_node(node_).find_child_by_attribute("key", key).internal_object()};
}

CGFloat InterfaceDecoder::coordinate(const char* name, double limit) const {
  const auto text = attribute(name);
  if (!text)
    fail(std::string("has no ") + name);
  const double value = number(name, 0);
  if (std::abs(value) <= limit)
    return static_cast<CGFloat>(value);
  fail(not_a(name, *text, "a length in reach"));
  return 0;
}

std::optional<NSRect> InterfaceDecoder::rect(const char* key) const {
  const InterfaceDecoder element = child(key);
  if (!element.exists())
    return std::nullopt;
  if (element.elementName() != "rect") {
    element.fail("is not a rect");
    return std::nullopt;
  }
  const NSRect rect =
      NSMakeRect(element.coordinate("x", largest_coordinate), element.coordinate("y", largest_coordinate),
                 element.coordinate("width", largest_extent), element.coordinate("height", largest_extent));
  if (rect.size.width < 0 || rect.size.height < 0)
    element.fail("has a negative extent");
  return rect;
}

std::optional<double> InterfaceDecoder::real(const char* key) const {
  const InterfaceDecoder element = child(key);
  if (!element.exists())
    return std::nullopt;
  if ((element.elementName() != "real" && element.elementName() != "integer") ||
      !element.attribute("value")) {
    element.fail("is not a number");
    return std::nullopt;
  }
  return element.number("value", 0);
}

NSRect InterfaceDecoder::frame() const {
  const auto found = rect("frame");
  if (!found)
    fail("has no frame");
  return found.value_or(NSRect{});
}

unsigned InterfaceDecoder::autoresizingMask() const {
  static constexpr const char* bits[] = {"flexibleMinX", "widthSizable",  "flexibleMaxX",
                                         "flexibleMinY", "heightSizable", "flexibleMaxY"};
  const InterfaceDecoder element = child("autoresizingMask");
  unsigned mask = 0;
  for (unsigned bit = 0; bit < std::size(bits); ++bit) {
    if (element.boolean(bits[bit], false))
      mask |= 1U << bit;
  }
  return mask;
}

Ref<NSObject> InterfaceDecoder::object(const char* key) const {
  const InterfaceDecoder element = child(key);
  return element.exists() ? load_->object_of(pugi::xml_node(element.node_)) : nullptr;
}

std::vector<Ref<NSObject>> InterfaceDecoder::objects(const char* container) const {
  std::vector<Ref<NSObject>> made;
  for (const pugi::xml_node element : pugi::xml_node(node_).child(container).children()) {
    if (element.type() != pugi::node_element)
      continue;
    if (Ref<NSObject> object = load_->object_of(element))
      made.push_back(std::move(object));
  }
  return made;
}

}  // namespace cocoa
