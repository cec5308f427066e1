// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stand_ins.h"

namespace cocoa::stand_in {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::string_view frame = R"(<rect key="frame" x="0" y="0" width="10" height="10"/>)";

/// The demo document with one piece of text replaced, which must occur once.
std::string demo_with(std::string_view piece, std::string_view replacement) {
  std::string text(demo_document);
  const size_t at = text.find(piece);
  EXPECT_NE(at, text.npos) << piece;
  EXPECT_EQ(text.find(piece, at + 1), text.npos) << piece;
  return text.replace(at, piece.size(), replacement);
}

/// The one line logged by a load that fails and leaves nothing behind.
std::string failure_of(std::string_view text) {
  const NSAutoreleasePool pool;
  const Log log;
  Object::woken.clear();
  const auto owner = make<Owner>();
  EXPECT_FALSE(load(text, owner.get()));
  EXPECT_EQ(Object::alive, 1);
  EXPECT_EQ(owner->retainCount(), 1U);
  EXPECT_FALSE(owner->root || owner->left || owner->right || owner->field || owner->panel || owner->well);
  EXPECT_THAT(Object::woken, IsEmpty());
  EXPECT_EQ(log.lines.size(), 1U);
  return log.lines.empty() ? std::string() : log.lines.front();
}

std::string view(std::string_view attributes, std::string_view contents = frame) {
  return "<customView " + std::string(attributes) + ">" + std::string(contents) + "</customView>";
}

TEST(InterfaceFailures, NameAClassThatIsUnknown) {
  EXPECT_EQ(failure_of(demo_with(R"(id="12" customClass="DemoDial")", R"(id="12" customClass="DemoDail")")),
            R"(Demo.xib: <customView id="12">: no class is named "DemoDail")");
  EXPECT_EQ(failure_of(document(R"(<menu id="1"/>)")),
            R"(Demo.xib: <menu id="1">: no class is named "NSMenu")");
}

TEST(InterfaceFailures, NameAClassThatDoesNotFitItsElement) {
  EXPECT_EQ(failure_of(document(view(R"(id="1" customClass="NSWindow")"))),
            R"(Demo.xib: <customView id="1">: NSWindow is not a kind of NSView)");
  EXPECT_EQ(failure_of(document(view(R"(id="1" customClass="NSBox")"))),
            R"(Demo.xib: <customView id="1">: NSBox cannot be made from an element of this kind)");
  EXPECT_EQ(failure_of(document(R"(<customObject id="1" customClass="NSView"/>)")),
            R"(Demo.xib: <customObject id="1">: NSView cannot be made from an element of this kind)");
  EXPECT_EQ(failure_of(document(R"(<view id="1" customClass="DemoDial"/>)")),
            R"(Demo.xib: <view id="1">: DemoDial cannot be made from an element of this kind)");
}

TEST(InterfaceFailures, NameAnElementThatIsNoObject) {
  EXPECT_EQ(failure_of(document(R"(<slider id="1"/>)")),
            R"(Demo.xib: <slider id="1">: is of no kind that can be made into an object)");
  EXPECT_EQ(
      failure_of(document(view(R"(id="1")", std::string(frame) + "<subviews><rect/></subviews>"))),
      R"(Demo.xib: <rect> in <subviews> in <customView id="1">: is of no kind that can be made into an object)");
}

TEST(InterfaceFailures, NameAnOutletThatIsUnknown) {
  EXPECT_EQ(failure_of(demo_with(R"(property="left")", R"(property="leftt")")),
            R"(Demo.xib: <outlet id="21"> in <customObject id="-2">: DemoOwner has no outlet "leftt")");
  EXPECT_EQ(failure_of(demo_with(R"(property="delegate")", "")),
            R"(Demo.xib: <outlet id="33"> in <window id="40">: NSWindow has no outlet "")");
}

TEST(InterfaceFailures, NameAnOutletOfAnotherClassAndClearTheOwnersOtherOutlets) {
  // "well" is the last outlet of the owner: the others were set by then.
  EXPECT_EQ(
      failure_of(demo_with(R"(property="well" destination="42")", R"(property="well" destination="41")")),
      R"(Demo.xib: <outlet id="25"> in <customObject id="-2">: a NSView does not fit outlet "well")");
}

TEST(InterfaceFailures, NameADestinationThatIsMissing) {
  EXPECT_EQ(failure_of(demo_with(R"(destination="11")", R"(destination="99")")),
            R"(Demo.xib: <outlet id="21"> in <customObject id="-2">: destination "99" is not in the file)");
  EXPECT_EQ(failure_of(demo_with(R"(destination="11" )", "")),
            R"(Demo.xib: <outlet id="21"> in <customObject id="-2">: destination "" is not in the file)");
  EXPECT_EQ(failure_of(
                demo_with(R"(selector="wellChanged:" target="-2")", R"(selector="wellChanged:" target="x")")),
            R"(Demo.xib: <action id="32"> in <colorWell id="42">: target "x" is not in the file)");
}

TEST(InterfaceFailures, NameADestinationOfWhichNothingIsMade) {
  constexpr std::string_view end = ": connects element \"-1\", of which no object was made";
  EXPECT_THAT(failure_of(demo_with(R"(destination="11")", R"(destination="-1")")), ::testing::EndsWith(end));
  EXPECT_THAT(failure_of(demo_with(R"(selector="wellChanged:" target="-2")",
                                   R"(selector="wellChanged:" target="-1")")),
              ::testing::EndsWith(end));
  EXPECT_THAT(failure_of(document(R"(<customObject id="-3"><connections>
                <outlet property="delegate" destination="-3" id="5"/></connections></customObject>)")),
              ::testing::EndsWith("connects element \"-3\", of which no object was made"));
}

TEST(InterfaceFailures, NameAnOwnerThatIsNotThere) {
  const NSAutoreleasePool pool;
  const Log log;
  EXPECT_FALSE(load(demo_document, nullptr));
  EXPECT_THAT(log.lines, ElementsAre(HasSubstr("connects element \"-2\", of which no object was made")));
  EXPECT_EQ(Object::alive, 0);
}

TEST(InterfaceFailures, NameAnActionThatCannotBeSent) {
  EXPECT_EQ(
      failure_of(demo_with("\"wellChanged:\"", "\"welChanged:\"")),
      R"(Demo.xib: <action id="32"> in <colorWell id="42">: DemoOwner does not respond to "welChanged:")");
  EXPECT_EQ(failure_of(demo_with(R"(<outlet property="delegate" destination="-2" id="33"/>)",
                                 R"(<action selector="wellChanged:" target="-2" id="33"/>)")),
            R"(Demo.xib: <action id="33"> in <window id="40">: NSWindow sends no actions)");
}

TEST(InterfaceFailures, NameAConnectionOfAnUnknownKind) {
  EXPECT_EQ(
      failure_of(demo_with(R"(<outlet property="delegate")", R"(<binding property="delegate")")),
      R"(Demo.xib: <binding id="33"> in <window id="40">: is not a kind of connection that can be made)");
}

TEST(InterfaceFailures, NameAnIdThatIsUsedTwice) {
  EXPECT_EQ(failure_of(demo_with(R"(id="17")", R"(id="12")")),
            R"(Demo.xib: <view id="12">: has the id of another element)");
}

TEST(InterfaceFailures, NameAFrameThatIsMissingOrMalformed) {
  EXPECT_EQ(failure_of(document(view(R"(id="1")", ""))), R"(Demo.xib: <customView id="1">: has no frame)");
  EXPECT_EQ(failure_of(document(R"(<view id="1"/>)")), R"(Demo.xib: <view id="1">: has no frame)");
  EXPECT_EQ(failure_of(document(view(R"(id="1")", R"(<size key="frame" width="1" height="1"/>)"))),
            R"(Demo.xib: <size key="frame"> in <customView id="1">: is not a rect)");
  EXPECT_EQ(failure_of(document(view(R"(id="1")", R"(<rect key="frame" x="0" y="0" width="1"/>)"))),
            R"(Demo.xib: <rect key="frame"> in <customView id="1">: has no height)");
  EXPECT_EQ(
      failure_of(document(view(R"(id="1")", R"(<rect key="frame" x="0" y="0" width="-1" height="1"/>)"))),
      R"(Demo.xib: <rect key="frame"> in <customView id="1">: has a negative extent)");
  EXPECT_EQ(
      failure_of(document(view(R"(id="1")", R"(<rect key="frame" x="2e6" y="0" width="1" height="1"/>)"))),
      R"(Demo.xib: <rect key="frame"> in <customView id="1">: x="2e6" is not a length in reach)");
}

TEST(InterfaceFailures, NameANumberThatIsNone) {
  for (const std::string_view number : {"", "1,5", "abc", "0x10", "1 ", " 1", "+1", "nan", "inf", "1e999"}) {
    const std::string quoted = '"' + std::string(number) + '"';
    EXPECT_EQ(failure_of(document(
                  view(R"(id="1")", R"(<rect key="frame" x="0" y="0" height="1" width=)" + quoted + "/>"))),
              R"(Demo.xib: <rect key="frame"> in <customView id="1">: width=)" + quoted + " is not a number");
  }
  EXPECT_EQ(failure_of(demo_with(R"(maximumFractionDigits="3")", R"(maximumFractionDigits="3.5")")),
            R"(Demo.xib: <numberFormatter id="15">: maximumFractionDigits="3.5" is not an integer)");
  EXPECT_EQ(failure_of(demo_with(R"(<real key="maximum" value="10"/>)", R"(<real key="maximum"/>)")),
            R"(Demo.xib: <real key="maximum"> in <numberFormatter id="15">: is not a number)");
}

TEST(InterfaceFailures, NameAValueThatIsUnknown) {
  EXPECT_EQ(failure_of(demo_with(R"(borderType="line")", R"(borderType="wavy")")),
            R"(Demo.xib: <box id="16">: borderType="wavy" is not a value that is known here)");
  EXPECT_EQ(failure_of(demo_with(R"(releasedWhenClosed="NO")", R"(releasedWhenClosed="no")")),
            R"(Demo.xib: <window id="40">: releasedWhenClosed="no" is not a value that is known here)");
}

TEST(InterfaceFailures, NameAPropertyOfAnotherClass) {
  EXPECT_EQ(failure_of(document(R"(<box id="1"><rect key="frame" x="0" y="0" width="1" height="1"/>
              <color key="contentView"/></box>)")),
            R"(Demo.xib: <box id="1">: holds a NSColor where a NSView belongs)");
  EXPECT_EQ(failure_of(document(view(R"(id="1")", std::string(frame) + "<subviews><color/></subviews>"))),
            R"(Demo.xib: <customView id="1">: holds a NSColor where a NSView belongs)");
}

TEST(InterfaceFailures, NameAViewThatIsNotTakenUp) {
  const std::string child = R"(<customView id="2">)" + std::string(frame) + "</customView>";
  EXPECT_EQ(failure_of(document(view(R"(id="1" customClass="DeafView")",
                                     std::string(frame) + "<subviews>" + child + "</subviews>"))),
            R"(Demo.xib: <customView id="2">: is not taken by the object around it)");
  EXPECT_EQ(failure_of(document(view(R"(id="1")", std::string(frame) + R"(<view key="contentView" id="2">)" +
                                                      std::string(frame) + "</view>"))),
            R"(Demo.xib: <view id="2">: is not taken by the object around it)");
}

TEST(InterfaceFailures, NameAnObjectThatIsConnectedButNotKept) {
  const std::string child =
      R"(<customView id="2" customClass="DemoRoot">)" + std::string(frame) + "</customView>";
  EXPECT_EQ(
      failure_of(
          document(view(R"(id="1" customClass="CarelessView")",
                        std::string(frame) + "<subviews>" + child + "</subviews>") +
                   R"(<customObject id="-2"><connections><outlet property="root" destination="2" id="5"/>
                   </connections></customObject>)")),
      R"(Demo.xib: <outlet id="5"> in <customObject id="-2">: connects element "2", which no object keeps)");
}

TEST(InterfaceFailures, NameADocumentOfAnotherType) {
  EXPECT_EQ(failure_of("<plist/>"), "Demo.xib: <plist>: is not an Interface Builder document");
  EXPECT_EQ(failure_of(demo_with("Builder3.Cocoa.XIB", "Builder3.CocoaTouch.XIB")),
            "Demo.xib: <document>: is not an Interface Builder document");
  EXPECT_EQ(failure_of(demo_with(R"(version="3.0")", R"(version="4.0")")),
            "Demo.xib: <document>: is not of version 3.0");
  EXPECT_EQ(failure_of(R"(<document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"/>)"),
            "Demo.xib: <document>: has no objects");
}

TEST(InterfaceFailures, NameTheLineWhereTheXMLBreaks) {
  EXPECT_THAT(failure_of(demo_with("</box>", "</bax>")), ::testing::StartsWith("Demo.xib: line 33: "));
  EXPECT_THAT(failure_of(""), ::testing::StartsWith("Demo.xib: line 1: "));
  EXPECT_THAT(failure_of("\n\n<document"), ::testing::StartsWith("Demo.xib: line 3: "));
}

TEST(InterfaceFailures, NameTheLineWhereTheTextIsNotUTF8) {
  using namespace std::string_view_literals;
  for (const std::string_view bytes : {"\x80"sv, "\xC0\x80"sv, "\xC3"sv, "\xE0\x80\x80"sv, "\xED\xA0\x80"sv,
                                       "\xF0\x80\x80\x80"sv, "\xF4\x90\x80\x80"sv, "\xFF"sv, "\0"sv}) {
    EXPECT_EQ(failure_of(demo_with("Colours", bytes)), "Demo.xib: line 36: is not text in UTF-8");
  }
}

TEST(InterfaceFailures, RefuseTextBeyondFourMebibytes) {
  EXPECT_EQ(failure_of(std::string(demo_document) + std::string(size_t{4} << 20, ' ')),
            "Demo.xib: is larger than 4 MiB");
}

TEST(InterfaceFailures, RefuseElementsNestedTooDeeply) {
  const auto nested = [](size_t depth) {
    std::string text;
    for (size_t i = 0; i < depth; ++i)
      text += "<a>";
    for (size_t i = 0; i < depth; ++i)
      text += "</a>";
    return document(R"(<customObject customClass="Probe">)" + text + "</customObject>");
  };
  EXPECT_EQ(failure_of(nested(62)), "Demo.xib: elements are nested too deeply");
  EXPECT_EQ(failure_of(nested(200000)), "Demo.xib: elements are nested too deeply");
  const NSAutoreleasePool pool;
  EXPECT_TRUE(load(nested(61)));
}

TEST(InterfaceFailures, KeepTheLogToOneShortLine) {
  const std::string line =
      failure_of(document(view(R"(id="1&#10;2&#27;" customClass=")" + std::string(5000, 'x') + '"')));
  EXPECT_THAT(line, ::testing::StartsWith(R"(Demo.xib: <customView id="1\n2\x1b">: no class is named "xxx)"));
  EXPECT_EQ(line.size(), 1000U);
}

TEST(InterfaceFailures, LogTheFirstCauseOnly) {
  EXPECT_EQ(failure_of(document(view(R"(id="1" customClass="One")") + view(R"(id="2" customClass="Two")"))),
            R"(Demo.xib: <customView id="1">: no class is named "One")");
}

TEST(InterfaceFailures, MayBeFoundByAClass) {
  Probe::look = [](InterfaceDecoder& decoder) { decoder.fail("wants a colour"); };
  EXPECT_EQ(failure_of(document(R"(<customObject id="1" customClass="Probe"/>)")),
            R"(Demo.xib: <customObject id="1">: wants a colour)");
  Probe::look = nullptr;
}

}  // namespace
}  // namespace cocoa::stand_in
