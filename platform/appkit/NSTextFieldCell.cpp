// SPDX-License-Identifier: MIT
#include "appkit/NSTextFieldCell.h"

#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSTextFieldCell::class_ = {
    .name = "NSTextFieldCell",
    .superclass = &NSObject::class_,
    .init = [] { return Ref<NSObject>(make<NSTextFieldCell>()); },
    .initWithInterface =
        [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSTextFieldCell>(decoder)); }};

namespace {
constexpr std::string_view alignments[] = {"left", "right", "center", "justified", "natural"};
constexpr std::string_view borders[] = {"none", "border", "bezel"};

template <typename T>
Ref<T> given_or(Ref<T> given, Ref<T> if_absent) {
  return given ? given : if_absent;
}
}  // namespace

NSTextFieldCell::NSTextFieldCell()
    : font(NSFont::systemFontOfSize(0)),
      text_color(NSColor::blackColor()),
      background_color(NSColor::whiteColor()) {}

NSTextFieldCell::NSTextFieldCell(InterfaceDecoder& decoder)
    : title(decoder.attribute("title").value_or("")),
      editable(decoder.boolean("editable", false)),
      selectable(decoder.boolean("selectable", false)),
      bordered(decoder.choice("borderStyle", borders, 0) != 0),
      draws_background(decoder.boolean("drawsBackground", false)),
      sends_action_on_end_editing(decoder.boolean("sendsActionOnEndEditing", false)),
      alignment(
          static_cast<NSTextAlignment>(decoder.choice("alignment", alignments, NSNaturalTextAlignment))),
      font(given_or(decoder.object_as<NSFont>("font"), NSFont::systemFontOfSize(0))),
      text_color(given_or(decoder.object_as<NSColor>("textColor"), NSColor::blackColor())),
      background_color(given_or(decoder.object_as<NSColor>("backgroundColor"), NSColor::whiteColor())),
      formatter(decoder.object_as<NSNumberFormatter>("formatter")) {}

}  // namespace cocoa
