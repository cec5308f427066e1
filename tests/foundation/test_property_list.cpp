// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "foundation/private/property_list.h"
#include "foundation/private/xml_well_formed.h"
#include "property_list_values.h"
#include "store_test_support.h"

namespace cocoa {
namespace {

using store_tests::plist;
using testing::HasSubstr;
using testing::Optional;

std::vector<uint8_t> bytes(std::string_view text) {
  return {text.begin(), text.end()};
}

PropertyListValue data(std::string_view value) {
  return bytes(value);
}

std::string cause_of_refusal(std::string_view xml) {
  const Result<PropertyList> list = PropertyList::fromXML(xml);
  return list ? std::string() : list.cause();
}

PropertyList list_of(std::string_view xml) {
  Result<PropertyList> list = PropertyList::fromXML(xml);
  EXPECT_TRUE(list) << list.cause();
  return list ? std::move(*list) : PropertyList();
}

TEST(Base64, AgreesWithItsDefinitionsExamples) {
  const std::pair<std::string_view, std::string_view> examples[] = {{"", ""},
                                                                    {"f", "Zg=="},
                                                                    {"fo", "Zm8="},
                                                                    {"foo", "Zm9v"},
                                                                    {"foob", "Zm9vYg=="},
                                                                    {"fooba", "Zm9vYmE="},
                                                                    {"foobar", "Zm9vYmFy"},
                                                                    {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& [plain, encoded] : examples) {
    EXPECT_EQ(base64_from_bytes(bytes(plain)), encoded);
    EXPECT_THAT(bytes_from_base64(encoded), Optional(bytes(plain)));
  }
}

TEST(Base64, SkipsWhitespaceAnywhere) {
  EXPECT_THAT(bytes_from_base64("\n\t\tZm 9v\r\n\t\tYg =\n=\n\t"), Optional(bytes("foob")));
}

TEST(Base64, RefusesWhatItDoesNotHave) {
  for (const char* wrong :
       {"Zg", "Zg=", "Zg===", "Z", "Z===", "Zm9v=", "=", "Zg==Zg==", "Zm9-", "Zm9\xC3\xA9"})
    EXPECT_FALSE(bytes_from_base64(wrong)) << wrong;
  EXPECT_FALSE(bytes_from_base64(std::string_view("Zm9v\0", 5)));
}

TEST(XmlText, IsSoundUtf8WithoutControlCharacters) {
  for (const char* good :
       {"", "a\tb\nc\rd", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x8E\x9B", "\xF4\x8F\xBF\xBF"})
    EXPECT_TRUE(is_xml_text(good)) << good;
  for (const char* bad : {"\x01", "\x1F", "\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                          "\xEF\xBF\xBE", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xC3(", "\xFF"})
    EXPECT_FALSE(is_xml_text(bad)) << bad;
  EXPECT_FALSE(is_xml_text(std::string_view("a\0b", 3)));
}

TEST(PropertyList, WritesTheUsualDocument) {
  PropertyList list;
  list.setValue("colour", data("foob"));
  list.setValue("name", text("Tom & <Jerry>"));
  EXPECT_EQ(list.xml(), plist("\t\t<key>colour</key>\n\t\t<data>Zm9vYg==</data>\n"
                              "\t\t<key>name</key>\n\t\t<string>Tom &amp; &lt;Jerry&gt;</string>\n"));
}

TEST(PropertyList, EveryTextAndDataComesBack) {
  for (const char* value :
       {"", " ", "\n", "\r", "a\r\nb", "\t\t", " a ", "&amp;", "<!-- -->", "]]>", "&#13;", "\xC3\xA9"}) {
    PropertyList list;
    list.setValue(value, text(value));
    const PropertyList again = list_of(list.xml());
    EXPECT_THAT(again.value(value), Optional(text(value)));
    EXPECT_EQ(again.xml(), list.xml());
  }
  PropertyList list;
  list.setValue("none", data(""));
  EXPECT_THAT(list_of(list.xml()).value("none"), Optional(data("")));
}

TEST(PropertyList, ReadsDataInLinesAndCommentedText) {
  const PropertyList list =
      list_of(plist("<key>d</key><data>\n\tZm9v\n\tYmFy\n\t</data><!-- c --><key>s<!-- c -->t</key>"
                    "<string>a<![CDATA[<b>]]>c</string>"));
  EXPECT_THAT(list.value("d"), Optional(data("foobar")));
  EXPECT_THAT(list.value("st"), Optional(text("a<b>c")));
}

TEST(PropertyList, LeavesValuesOfOtherKindsAsTheyCame) {
  const std::string others =
      "\t\t<key>i</key>\n\t\t<integer>42</integer>\n"
      "\t\t<key>b</key>\n\t\t<true />\n"
      "\t\t<key>r</key>\n\t\t<real>0.1</real>\n"
      "\t\t<key>t</key>\n\t\t<date>2009-02-13T23:31:30Z</date>\n"
      "\t\t<key>a</key>\n\t\t<array>\n\t\t\t<string> </string>\n\t\t\t<string>x&#13;&amp;</string>\n"
      "\t\t\t<dict>\n\t\t\t\t<key>k</key>\n\t\t\t\t<data>!not base64!</data>\n\t\t\t</dict>\n\t\t</array>\n";
  PropertyList list = list_of(plist(others));
  EXPECT_TRUE(list.contains("i"));
  EXPECT_THAT(list.value("i"), Optional(PropertyListValue(OpaqueValue{"integer"})));
  EXPECT_THAT(list.value("a"), Optional(PropertyListValue(OpaqueValue{"array"})));
  EXPECT_FALSE(list.contains("k")) << "a key inside a value";

  list.setValue("new", text("v"));
  EXPECT_EQ(list.xml(), plist(others + "\t\t<key>new</key>\n\t\t<string>v</string>\n"));
  list.removeValue("new");
  EXPECT_EQ(list.xml(), plist(others));
}

TEST(PropertyList, DataThatIsNoneIsThereAndStays) {
  PropertyList list = list_of(plist("<key>d</key><data>***</data>"));
  EXPECT_THAT(list.value("d"), Optional(PropertyListValue(OpaqueValue{"data"})));
  list.setValue("new", text("v"));
  EXPECT_THAT(list.xml(), HasSubstr("<data>***</data>"));
}

TEST(PropertyList, KeepsTheSpacesOfOthersTexts) {
  PropertyList list = list_of(plist("<key> k </key><string>  <![CDATA[ a ]]> <!-- c --> b </string>"));
  EXPECT_THAT(list.value(" k "), Optional(text("   a   b ")));
  EXPECT_THAT(list_of(list.xml()).value(" k "), Optional(text("   a   b ")));
}

TEST(PropertyList, ReplacesAValueWhereItStands) {
  PropertyList list = list_of(plist("<key>a</key><integer>1</integer><key>b</key><true/>"));
  list.setValue("a", text("one"));
  EXPECT_EQ(list.xml(),
            plist("\t\t<key>a</key>\n\t\t<string>one</string>\n\t\t<key>b</key>\n\t\t<true />\n"));
}

TEST(PropertyList, RemovesAKeyThatStandsTwice) {
  PropertyList list = list_of(plist("<key>a</key><integer>1</integer><key>a</key><integer>2</integer>"));
  list.removeValue("a");
  EXPECT_FALSE(list.contains("a"));
  list.removeValue("never there");
}

TEST(PropertyList, RefusesWhatIsNoPropertyList) {
  EXPECT_NE(cause_of_refusal(""), "");
  EXPECT_NE(cause_of_refusal("text"), "");
  EXPECT_NE(cause_of_refusal("<plist><dict>"), "");
  EXPECT_THAT(cause_of_refusal("<plist><array/></plist>"), HasSubstr("not a property list"));
  EXPECT_THAT(cause_of_refusal("<dict/>"), HasSubstr("not a property list"));
  EXPECT_THAT(cause_of_refusal("<plist><dict/><dict/></plist>"), HasSubstr("not a property list"));
  EXPECT_THAT(cause_of_refusal("<plist><dict/></plist><plist/>"), HasSubstr("beside the one element"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><uid/>")), HasSubstr("unknown kind"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><array><strinh>b</strinh></array>")),
              HasSubstr("unknown kind"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><dict><true/></dict>")), HasSubstr("pair"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><string><b/></string>")), HasSubstr("of its kind"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><true>x</true>")), HasSubstr("of its kind"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a<true/></key><true/>")), HasSubstr("key that is no text"));
  EXPECT_THAT(cause_of_refusal(plist("lost<key>a</key><true/>")), HasSubstr("text between"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><array>lost</array>")), HasSubstr("text between"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key>")), HasSubstr("pair"));
  EXPECT_THAT(cause_of_refusal(plist("<string>a</string>")), HasSubstr("pair"));
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key><key>b</key>")), HasSubstr("pair"));
  EXPECT_EQ(cause_of_refusal("<plist><dict/></plist>"), "");
}

TEST(PropertyList, RefusesDeepNestingWithoutRunningOutOfStack) {
  std::string deep;
  for (int i = 0; i < 100000; ++i)
    deep += "<array>";
  for (int i = 0; i < 100000; ++i)
    deep += "</array>";
  EXPECT_THAT(cause_of_refusal(plist("<key>a</key>" + deep)), HasSubstr("too deeply"));
}

TEST(PropertyList, RefusesEntitiesOfItsOwn) {
  EXPECT_NE(cause_of_refusal(
                "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY f SYSTEM \"file:///etc/hostname\">]>"
                "<plist><dict><key>k</key><string>&a;&f;</string></dict></plist>"),
            "");
  EXPECT_NE(cause_of_refusal(plist("<key>k</key><string>&a;</string>")), "");
}

TEST(PropertyList, SurvivesDamage) {
  constexpr unsigned kSeed = 7;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const std::string whole = plist(
      "<key>a</key><data>Zm9v</data><key>b</key><array><true/><string x=\"y\">&amp;&#65;</string></array>");
  for (size_t length = 0; length + 2 < whole.size(); ++length)
    EXPECT_NE(cause_of_refusal(whole.substr(0, length)), "") << length;
  for (int round = 0; round < 20000; ++round) {
    std::string damaged = whole;
    for (int changes = 0; changes < 3; ++changes)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    if (auto list = PropertyList::fromXML(damaged)) {
      list->setValue("a", text("new"));
      const std::string written = list->xml();
      EXPECT_TRUE(check_xml(written)) << damaged;
      EXPECT_THAT(list_of(written).value("a"), Optional(text("new")));
    }
  }
}

}  // namespace
}  // namespace cocoa
