// SPDX-License-Identifier: MIT
#include "stand_ins.h"

namespace cocoa::stand_in {

void View::applyInterface(InterfaceDecoder& decoder) {
  ++applied;
  mask = decoder.autoresizingMask();
  for (Ref<View>& view : decoder.objects_as<View>("subviews"))
    subviews.push_back(std::move(view));
}

void Box::applyInterface(InterfaceDecoder& decoder) {
  View::applyInterface(decoder);
  static constexpr std::string_view borders[] = {"none", "line", "bezel", "groove"};
  title = decoder.attribute("title").value_or("Title");
  border = decoder.choice("borderType", borders, 3);
  content_view = decoder.object_as<View>("contentView");
}

Window::Window(InterfaceDecoder& decoder)
    : content_rect(decoder.rect("contentRect").value_or(NSRect{})),
      titled(decoder.child("styleMask").boolean("titled", false)),
      closable(decoder.child("styleMask").boolean("closable", false)),
      released_when_closed(decoder.boolean("releasedWhenClosed", true)) {}

void Window::applyInterface(InterfaceDecoder& decoder) {
  content_view = decoder.object_as<View>("contentView");
}

Formatter::Formatter(InterfaceDecoder& decoder)
    : minimum(decoder.real("minimum").value_or(-1)),
      maximum(decoder.real("maximum").value_or(-1)),
      fraction_digits(decoder.integer("maximumFractionDigits", 0)) {}

void Cell::applyInterface(InterfaceDecoder& decoder) {
  title = decoder.attribute("title").value_or("");
  formatter = decoder.object_as<Formatter>("formatter");
}

Color::Color(InterfaceDecoder& decoder)
    : red(decoder.number("red", 0)),
      green(decoder.number("green", 0)),
      blue(decoder.number("blue", 0)),
      alpha(decoder.number("alpha", 1)) {}

void TextField::applyInterface(InterfaceDecoder& decoder) {
  View::applyInterface(decoder);
  cell = decoder.object_as<Cell>("cell");
}

void ColorWell::applyInterface(InterfaceDecoder& decoder) {
  View::applyInterface(decoder);
  color = decoder.object_as<Color>("color");
}

namespace {

template <typename T>
Ref<NSObject> with_frame(NSRect frame) {
  return make<T>(frame);
}
template <typename T>
Ref<NSObject> with_element(InterfaceDecoder& decoder) {
  return make<T>(decoder);
}

constexpr Outlet window_outlets[] = {{"delegate", FieldOutlet<&Window::delegate>::set}};
constexpr Outlet root_outlets[] = {{"partner", FieldOutlet<&DemoRoot::partner>::set}};
constexpr Outlet owner_outlets[] = {
    {"root", FieldOutlet<&Owner::root>::set},   {"left", FieldOutlet<&Owner::left>::set},
    {"right", FieldOutlet<&Owner::right>::set}, {"field", FieldOutlet<&Owner::field>::set},
    {"panel", FieldOutlet<&Owner::panel>::set}, {"well", FieldOutlet<&Owner::well>::set}};
constexpr Action owner_actions[] = {{SEL("fieldChanged:"), MethodAction<&Owner::fieldChanged>::perform},
                                    {SEL("wellChanged:"), MethodAction<&Owner::wellChanged>::perform}};

}  // namespace

const Class View::class_ = {.name = "NSView",
                            .superclass = &NSObject::class_,
                            .initWithFrame = with_frame<View>,
                            .initWithInterface = with_element<View>};
const Class Box::class_ = {
    .name = "NSBox", .superclass = &View::class_, .initWithInterface = with_element<Box>};
const Class Window::class_ = {.name = "NSWindow",
                              .superclass = &NSObject::class_,
                              .initWithInterface = with_element<Window>,
                              .outlets = window_outlets};
const Class Formatter::class_ = {.name = "NSNumberFormatter",
                                 .superclass = &NSObject::class_,
                                 .initWithInterface = with_element<Formatter>};
const Class Cell::class_ = {
    .name = "NSTextFieldCell",
    .superclass = &NSObject::class_,
    .initWithInterface = [](InterfaceDecoder&) -> Ref<NSObject> { return make<Cell>(); }};
const Class Color::class_ = {
    .name = "NSColor", .superclass = &NSObject::class_, .initWithInterface = with_element<Color>};
const Class TextField::class_ = {
    .name = "NSTextField", .superclass = &View::class_, .initWithInterface = with_element<TextField>};
const Class ColorWell::class_ = {
    .name = "NSColorWell", .superclass = &View::class_, .initWithInterface = with_element<ColorWell>};
const Class DemoRoot::class_ = {.name = "DemoRoot",
                                .superclass = &View::class_,
                                .initWithFrame = with_frame<DemoRoot>,
                                .outlets = root_outlets};
const Class DemoDial::class_ = {
    .name = "DemoDial", .superclass = &View::class_, .initWithFrame = with_frame<DemoDial>};
const Class DeafView::class_ = {
    .name = "DeafView", .superclass = &View::class_, .initWithFrame = with_frame<DeafView>};
const Class CarelessView::class_ = {
    .name = "CarelessView", .superclass = &View::class_, .initWithFrame = with_frame<CarelessView>};
const Class Probe::class_ = {.name = "Probe", .superclass = &NSObject::class_, .init = []() -> Ref<NSObject> {
                               return make<Probe>();
                             }};
const Class Owner::class_ = {.name = "DemoOwner",
                             .superclass = &NSObject::class_,
                             .init = []() -> Ref<NSObject> { return make<Owner>(); },
                             .outlets = owner_outlets,
                             .actions = owner_actions};

std::span<const Class* const> classes() {
  static constexpr const Class* all[] = {
      &View::class_,     &Box::class_,       &Window::class_,       &Formatter::class_, &Cell::class_,
      &Color::class_,    &TextField::class_, &ColorWell::class_,    &DemoRoot::class_,  &DemoDial::class_,
      &DeafView::class_, &Probe::class_,     &CarelessView::class_, &Owner::class_};
  return all;
}

const Class* class_named(std::string_view name) {
  for (const Class* known : classes()) {
    if (known->name == name)
      return known;
  }
  return name == "NSObject" ? &NSObject::class_ : nullptr;
}

std::string document(std::string_view objects) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0">
<objects>
)" + std::string(objects) +
         "\n</objects></document>\n";
}

bool load(std::string_view text, NSObject* owner) {
  return load_interface("Demo.xib", text, class_named, owner);
}

const std::string_view demo_document = R"XML(<?xml version="1.0" encoding="UTF-8"?>
<document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0" toolsVersion="14460.31" targetRuntime="MacOSX.Cocoa" propertyAccessControl="none">
  <dependencies><deployment identifier="macosx"/><plugIn identifier="com.apple.InterfaceBuilder.CocoaPlugin" version="14460.31"/></dependencies>
  <objects>
    <customObject id="-2" userLabel="File's Owner" customClass="DemoOwner">
      <connections>
        <outlet property="root" destination="10" id="20"/> <outlet property="left" destination="11" id="21"/>
        <outlet property="right" destination="12" id="22"/> <outlet property="field" destination="13" id="23"/>
        <outlet property="panel" destination="40" id="24"/> <outlet property="well" destination="42" id="25"/>
      </connections>
    </customObject>
    <customObject id="-1" userLabel="First Responder" customClass="FirstResponder"/>
    <customObject id="-3" userLabel="Application" customClass="NSObject"/>
    <customView id="10" userLabel="Root" customClass="DemoRoot">
      <rect key="frame" x="0.0" y="0.0" width="300" height="200"/>
      <autoresizingMask key="autoresizingMask" flexibleMaxX="YES" flexibleMinY="YES"/>
      <subviews>
        <customView id="11" customClass="DemoDial"><rect key="frame" x="10" y="90" width="120" height="100"/></customView>
        <customView id="12" customClass="DemoDial"><rect key="frame" x="150" y="90" width="120" height="100"/></customView>
        <textField id="13">
          <rect key="frame" x="10" y="10" width="96" height="22"/>
          <textFieldCell key="cell" selectable="YES" editable="YES" sendsActionOnEndEditing="YES" borderStyle="bezel" alignment="right" title="1.0" drawsBackground="YES" id="14">
            <numberFormatter key="formatter" formatterBehavior="default10_4" numberStyle="decimal" minimumIntegerDigits="1" maximumIntegerDigits="309" maximumFractionDigits="3" id="15">
              <real key="minimum" value="0.0"/><real key="maximum" value="10"/>
            </numberFormatter>
            <font key="font" metaFont="system"/>
          </textFieldCell>
          <connections><action selector="fieldChanged:" target="-2" id="30"/></connections>
        </textField>
        <box borderType="line" title="Demo" id="16">
          <rect key="frame" x="150" y="5" width="130" height="80"/>
          <view key="contentView" id="17"><rect key="frame" x="2" y="2" width="126" height="63"/></view>
        </box>
      </subviews>
    </customView>
    <window title="Colours" releasedWhenClosed="NO" visibleAtLaunch="NO" id="40" userLabel="Panel">
      <windowStyleMask key="styleMask" titled="YES" closable="YES"/>
      <rect key="contentRect" x="200" y="200" width="180" height="80"/>
      <view key="contentView" id="41">
        <rect key="frame" x="0.0" y="0.0" width="180" height="80"/>
        <subviews>
          <colorWell id="42">
            <rect key="frame" x="20" y="20" width="60" height="40"/>
            <color key="color" red="0.0" green="0.15" blue="0.8" alpha="1" colorSpace="deviceRGB"/>
            <connections><action selector="wellChanged:" target="-2" id="32"/></connections>
          </colorWell>
        </subviews>
      </view>
      <connections><outlet property="delegate" destination="-2" id="33"/></connections>
    </window>
  </objects>
</document>
)XML";

}  // namespace cocoa::stand_in
