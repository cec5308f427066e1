#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "archived_samples.h"
#include "foundation/private/binary_property_list.h"
#include "foundation/private/property_list.h"
#include "store_test_support.h"

namespace cocoa {
namespace {

using store_tests::plist;
using testing::HasSubstr;

std::string bytes_of(std::string_view spelled) {
  const auto bytes = samples::bytes_of(spelled);
  return {bytes.begin(), bytes.end()};
}

/// Of every kind; made by Python's plistlib.
std::string sample() {
  return bytes_of(
      "62706C6973743030DC0102030405060708090A0B0C0D0E0F10111213141516171C517351755169516E51775172517451"
      "66516454646174655161546C6F6E6754613C263E6320ACD83CDF9B102A13FFFFFFFFFFFFFFFF11012C233FE000000000"
      "0000090844666F6F623341AE8C74A4000000A218195178D11A1B516B405F101130313233343536373839616263646566"
      "670821232527292B2D2F3133383A3F444B4D5659626364697275777A7C7D0000000000000101000000000000001D0000"
      "0000000000000000000000000091");
}

/// A list of the given objects, one byte an offset and a reference; the first object is the root.
std::string list_of(std::initializer_list<std::string_view> objects) {
  std::string list = "bplist00";
  std::string table;
  for (const std::string_view object : objects) {
    table += static_cast<char>(list.size());
    list += bytes_of(object);
  }
  const char trailer[] = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, static_cast<char>(objects.size()),
                          0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, static_cast<char>(list.size())};
  return list + table + std::string(trailer, sizeof trailer);
}

std::string xml_of(std::string_view bytes) {
  std::string cause;
  const auto xml = xml_from_binary_property_list(bytes, cause);
  return xml ? *xml : cause;
}

TEST(BinaryPropertyList, ReadsEveryKind) {
  std::string cause;
  const auto list = PropertyList::fromBytes(sample(), cause);
  ASSERT_TRUE(list) << cause;
  const auto entry = [](const std::string& key, const std::string& value) {
    return "\t\t<key>" + key + "</key>\n\t\t" + value + "\n";
  };
  EXPECT_EQ(list->xml(),
            plist(entry("s", "<string>a&lt;&amp;&gt;</string>") +
                  entry("u", "<string>\xE2\x82\xAC\xF0\x9F\x8E\x9B</string>") +
                  entry("i", "<integer>42</integer>") + entry("n", "<integer>-1</integer>") +
                  entry("w", "<integer>300</integer>") + entry("r", "<real>0.5</real>") +
                  entry("t", "<true />") + entry("f", "<false />") + entry("d", "<data>Zm9vYg==</data>") +
                  entry("date", "<date>2009-02-13T23:31:30Z</date>") +
                  entry("a",
                        "<array>\n\t\t\t<string>x</string>\n\t\t\t<dict>\n\t\t\t\t<key>k</key>\n"
                        "\t\t\t\t<data />\n\t\t\t</dict>\n\t\t</array>") +
                  entry("long", "<string>0123456789abcdefg</string>")));
}

TEST(BinaryPropertyList, WritesSharedValuesAtEachPlace) {
  EXPECT_EQ(xml_of(list_of({"A2 01 01", "51 'x'"})),
            "<plist version=\"1.0\"><array><string>x</string><string>x</string></array></plist>");
}

TEST(BinaryPropertyList, RefusesWhatDoesNotHoldTogether) {
  EXPECT_THAT(xml_of("bplist00"), HasSubstr("not a binary property list"));
  EXPECT_THAT(xml_of(list_of({"A1 05"})), HasSubstr("reference to nothing"));
  EXPECT_THAT(xml_of(list_of({"A1 00"})), HasSubstr("nested too deeply")) << "a list in itself";
  EXPECT_THAT(xml_of(list_of({"4F 13 7F FF FF FF FF FF FF FF"})), HasSubstr("beyond the end"));
  EXPECT_THAT(xml_of(list_of({"6F 13 FF FF FF FF FF FF FF FF"})), HasSubstr("beyond the end"));
  EXPECT_THAT(xml_of(list_of({"DF 13 FF FF FF FF FF FF FF FF"})), HasSubstr("beyond the end"));
  EXPECT_THAT(xml_of(list_of({"5F 51 'x'"})), HasSubstr("length that is no number"));
  EXPECT_THAT(xml_of(list_of({"D1 01 01", "10 05"})), HasSubstr("key that is no text"));
  EXPECT_THAT(xml_of(list_of({"00"})), HasSubstr("kind that XML does not have"));
  EXPECT_THAT(xml_of(list_of({"80 05"})), HasSubstr("kind that XML does not have"));
  EXPECT_THAT(xml_of(list_of({"51 07"})), HasSubstr("text that XML cannot hold"));
  EXPECT_THAT(xml_of(list_of({"61 D8 00"})), HasSubstr("text that XML cannot hold")) << "half a pair";
  EXPECT_THAT(xml_of(list_of({"33 7F F0 00 00 00 00 00 00"})), HasSubstr("date"));
  EXPECT_THAT(xml_of(list_of({"33 C2 37 48 76 E8 00 00 00"})), HasSubstr("date"));
}

TEST(BinaryPropertyList, ASmallListDoesNotBecomeAnImmenseOne) {
  // Each array holds the next one eight times, eleven arrays deep: 8^11 texts.
  EXPECT_THAT(xml_of(list_of({"A8 0101010101010101", "A8 0202020202020202", "A8 0303030303030303",
                              "A8 0404040404040404", "A8 0505050505050505", "A8 0606060606060606",
                              "A8 0707070707070707", "A8 0808080808080808", "A8 0909090909090909",
                              "A8 0A0A0A0A0A0A0A0A", "A8 0B0B0B0B0B0B0B0B", "51 'x'"})),
              HasSubstr("too large"));
}

TEST(BinaryPropertyList, SurvivesDamage) {
  constexpr unsigned kSeed = 11;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const std::string whole = sample();
  std::string cause;
  for (size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(PropertyList::fromBytes(whole.substr(0, length), cause)) << length;
  for (int round = 0; round < 20000; ++round) {
    std::string damaged = whole;
    for (int changes = 0; changes < 3; ++changes)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    if (const auto list = PropertyList::fromBytes(damaged, cause)) {
      EXPECT_TRUE(PropertyList::fromXML(list->xml(), cause)) << cause;
    }
  }
}

}  // namespace
}  // namespace cocoa
