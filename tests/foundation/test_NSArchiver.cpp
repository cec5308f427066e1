// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "archived_samples.h"
#include "foundation/NSClass.h"
#include "foundation/NSLog.h"
#include "foundation/NSString.h"
#include "foundation/private/typedstream_reader.h"
#include "foundation/private/typedstream_writer.h"

namespace cocoa {
namespace {

using namespace samples;
using testing::ElementsAre;

std::vector<uint8_t> archived_color(int8_t kind, std::vector<float> components) {
  return archive(*make<ArchivedColor>(kind, std::move(components)));
}

Ref<ArchivedColor> color_from(std::vector<uint8_t> bytes) {
  const Ref<NSObject> object = unarchive(std::move(bytes));
  return {dynamic_cast<ArchivedColor*>(object.get())};
}

/// The value of a colour whose first component is spelled so.
float component_spelled(const std::string& spelled) {
  const auto color = color_from(color_bytes("84 01 63 04 84 02 66 66 " + spelled + " 01 86"));
  return color ? color->components()[0] : std::nanf("");
}

/// How the archive spells a first component.
std::vector<uint8_t> spelling_of(float component) {
  const auto before = color_bytes("84 01 63 04 84 02 66 66");
  const auto whole = archived_color(4, {component, 1});
  return {whole.begin() + static_cast<std::ptrdiff_t>(before.size()), whole.end() - 2};
}

TEST(NSArchiver, WritesADeviceColourByteForByte) {
  const auto expected = color_bytes("84 01 63 02 84 04 66 66 66 66 00 83 9A 99 19 3E 83 CD CC 4C 3F 01 86");
  EXPECT_EQ(expected.size(), 67U);
  EXPECT_EQ(archived_color(2, {0.0F, 0.15F, 0.8F, 1.0F}), expected);
}

TEST(NSArchiver, WritesTheOtherKinds) {
  EXPECT_EQ(archived_color(1, {0.0F, 0.15F, 0.8F, 1.0F}),
            color_bytes("84 01 63 01 84 04 66 66 66 66 00 83 9A 99 19 3E 83 CD CC 4C 3F 01 86"));
  const auto white = archived_color(4, {0.5F, 1.0F});
  EXPECT_EQ(white, color_bytes("84 01 63 04 84 02 66 66 83 00 00 00 3F 01 86"));
  EXPECT_EQ(white.size(), 59U);
  EXPECT_EQ(archived_color(3, {1.0F, 1.0F}), color_bytes("84 01 63 03 84 02 66 66 01 01 86"));
}

TEST(NSArchiver, WritesWholeFloatsAsTheShortestInteger) {
  EXPECT_THAT(spelling_of(0), ElementsAre(0x00));
  EXPECT_THAT(spelling_of(-1), ElementsAre(0xFF));
  EXPECT_THAT(spelling_of(127), ElementsAre(0x7F));
  EXPECT_THAT(spelling_of(128), ElementsAre(0x81, 0x80, 0x00));
  EXPECT_THAT(spelling_of(-110), ElementsAre(0x92));
  EXPECT_THAT(spelling_of(-111), ElementsAre(0x81, 0x91, 0xFF)) << "the byte 91 is kept for tags";
  EXPECT_THAT(spelling_of(-128), ElementsAre(0x81, 0x80, 0xFF));
  EXPECT_THAT(spelling_of(-32768), ElementsAre(0x81, 0x00, 0x80));
  EXPECT_THAT(spelling_of(32768), ElementsAre(0x82, 0x00, 0x80, 0x00, 0x00));
  EXPECT_THAT(spelling_of(-2147483648.0F), ElementsAre(0x82, 0x00, 0x00, 0x00, 0x80));
  EXPECT_THAT(spelling_of(2147483520.0F), ElementsAre(0x82, 0x80, 0xFF, 0xFF, 0x7F));
}

TEST(NSArchiver, WritesWhatNoIntegerCanHoldAsAFloat) {
  EXPECT_THAT(spelling_of(-0.0F), ElementsAre(0x83, 0x00, 0x00, 0x00, 0x80));
  EXPECT_THAT(spelling_of(2147483648.0F), ElementsAre(0x83, 0x00, 0x00, 0x00, 0x4F));
  EXPECT_THAT(spelling_of(std::numeric_limits<float>::infinity()), ElementsAre(0x83, 0x00, 0x00, 0x80, 0x7F));
  EXPECT_THAT(spelling_of(-std::numeric_limits<float>::infinity()),
              ElementsAre(0x83, 0x00, 0x00, 0x80, 0xFF));
  EXPECT_THAT(spelling_of(std::bit_cast<float>(0x7FC00000U)), ElementsAre(0x83, 0x00, 0x00, 0xC0, 0x7F));
  EXPECT_THAT(spelling_of(0.5F), ElementsAre(0x83, 0x00, 0x00, 0x00, 0x3F));
}

TEST(NSArchiver, EveryFloatComesBackBitForBit) {
  for (const float value : {0.0F, -0.0F, 1.0F, -111.0F, 0.1F, 1e-45F, 2147483648.0F, 3.4e38F, -2147483648.0F,
                            std::numeric_limits<float>::infinity(), std::nanf("")}) {
    const auto color = color_from(archived_color(4, {value, 1}));
    ASSERT_TRUE(color) << value;
    EXPECT_EQ(std::bit_cast<uint32_t>(color->components()[0]), std::bit_cast<uint32_t>(value)) << value;
  }
}

TEST(NSUnarchiver, ReadsBothByteOrders) {
  const auto little =
      color_from(color_bytes("84 01 63 02 84 04 66 66 66 66 00 83 9A 99 19 3E 83 CD CC 4C 3F 01 86"));
  const auto big = color_from(
      color_bytes("84 01 63 02 84 04 66 66 66 66 00 83 3E 19 99 9A 83 3F 4C CC CD 01 86", kBigEndianHeader));
  for (const auto& color : {little, big}) {
    ASSERT_TRUE(color);
    EXPECT_EQ(color->kind(), 2);
    EXPECT_THAT(color->components(), ElementsAre(0.0F, 0.15F, 0.8F, 1.0F));
  }
  const auto white = color_from(color_bytes("84 01 63 03 84 02 66 66 01 01 86", kBigEndianHeader));
  ASSERT_TRUE(white);
  EXPECT_EQ(white->kind(), 3);
  EXPECT_THAT(white->components(), ElementsAre(1.0F, 1.0F));
}

TEST(NSUnarchiver, ReadsWholeValuesInEverySpelling) {
  EXPECT_EQ(component_spelled("83 00 00 80 3F"), 1.0F);
  EXPECT_EQ(component_spelled("81 01 00"), 1.0F);
  EXPECT_EQ(component_spelled("82 01 00 00 00"), 1.0F);
  EXPECT_EQ(component_spelled("92"), -110.0F);
  EXPECT_EQ(component_spelled("81 80 FF"), -128.0F);
}

TEST(NSArchiver, ASecondColourRefersToWhatTheFirstHasNamed) {
  TypedStreamWriter writer;
  writer.encodeObject(make<ArchivedColor>(int8_t{2}, std::vector<float>{0, 0, 0, 1}).get());
  writer.encodeObject(make<ArchivedColor>(int8_t{1}, std::vector<float>{1, 0, 0, 1}).get());
  EXPECT_EQ(writer.bytes(),
            color_bytes("84 01 63 02 84 04 66 66 66 66 00 00 00 01 86 92 84 93 95 01 96 01 00 00 01 86"));
}

TEST(NSArchiver, NumbersAnObjectBeforeItsClasses) {
  const auto red = make<ArchivedColor>(int8_t{2}, std::vector<float>{1, 0, 0, 1});
  const auto blue = make<ArchivedColor>(int8_t{2}, std::vector<float>{0, 0, 1, 1});
  const auto bytes = archive(*make<Pair>(red, blue));
  // Objects and classes: pair 92, Pair 93, NSObject 94, red 95, NSColor 96, blue 97.
  EXPECT_EQ(bytes, bytes_of(std::string(kLittleEndianHeader) +
                            "84 01 '@' 84 84 84 04 'Pair' 00 84 84 08 'NSObject' 00 85"
                            "92 84 84 84 07 'NSColor' 00 94 84 01 63 02 84 04 66 66 66 66 01 00 00 01 86"
                            "92 84 96 96 02 97 00 00 01 01 86 86"));
  const Ref<NSObject> read = unarchive(bytes);
  const auto* pair = dynamic_cast<Pair*>(read.get());
  ASSERT_TRUE(pair);
  EXPECT_THAT(dynamic_cast<ArchivedColor&>(*pair->first()).components(), ElementsAre(1, 0, 0, 1));
  EXPECT_THAT(dynamic_cast<ArchivedColor&>(*pair->second()).components(), ElementsAre(0, 0, 1, 1));
}

TEST(NSArchiver, AnObjectWrittenTwiceIsOneObjectAndNullStaysNull) {
  const auto red = make<ArchivedColor>(int8_t{2}, std::vector<float>{1, 0, 0, 1});
  const Ref<NSObject> twice = unarchive(archive(*make<Pair>(red, red)));
  const auto* pair = dynamic_cast<Pair*>(twice.get());
  ASSERT_TRUE(pair && pair->first());
  EXPECT_EQ(pair->first(), pair->second());

  const Ref<NSObject> half = unarchive(archive(*make<Pair>(nullptr, red)));
  pair = dynamic_cast<Pair*>(half.get());
  ASSERT_TRUE(pair);
  EXPECT_EQ(pair->first(), nullptr);
  EXPECT_NE(pair->second(), nullptr);
}

TEST(NSArchiver, RefersToAHighNumberWithTwoBytes) {
  std::vector<Ref<NSObject>> tree;
  tree.reserve(128);
  for (int i = 0; i < 128; ++i)
    tree.emplace_back(make<ArchivedColor>(int8_t{4}, std::vector<float>{static_cast<float>(i), 0}));
  const Ref<NSObject> last = tree.back();
  for (size_t step = 1; step < tree.size(); step *= 2) {
    for (size_t i = 0; i < tree.size(); i += 2 * step)
      tree[i] = make<Pair>(tree[i], tree[i + step]);
  }
  const auto bytes = archive(*make<Pair>(tree[0], last));
  // 128 pairs, 128 colours and three classes: the last colour is number 258, and -110 + 258 is 148.
  const std::vector<uint8_t> end(bytes.end() - 5, bytes.end());
  EXPECT_THAT(end, ElementsAre(0x92, 0x81, 0x94, 0x00, 0x86));

  const Ref<NSObject> read = unarchive(bytes);
  const auto* pair = dynamic_cast<Pair*>(read.get());
  ASSERT_TRUE(pair && pair->second());
  EXPECT_THAT(dynamic_cast<ArchivedColor&>(*pair->second()).components(), ElementsAre(127, 0));
  EXPECT_EQ(archive(*read), bytes);
}

TEST(NSArchiver, KeepsTheNumbersApartOfObjectsThatAreGone) {
  TypedStreamWriter writer;
  for (int i = 0; i < 3; ++i)
    writer.encodeObject(make<ArchivedColor>(int8_t{4}, std::vector<float>{static_cast<float>(i), 1}).get());
  EXPECT_EQ(writer.bytes(), color_bytes("84 01 63 04 84 02 66 66 00 01 86 92 84 93 95 04 96 01 01 86"
                                        "92 84 93 95 04 96 02 01 86"));
}

TEST(NSArchiver, RefusesAnObjectThatIsNeverArchived) {
  std::string logged;
  const NSLogHook hook([&](std::string_view message) { logged = message; });
  EXPECT_FALSE(NSArchiver::archivedDataWithRootObject(*make<NSString>("text")));
  EXPECT_THAT(logged, testing::HasSubstr("NSString"));
  EXPECT_FALSE(NSArchiver::archivedDataWithRootObject(*make<Pair>(make<NSString>("inside"), nullptr)));
}

TEST(NSArchiver, RefusesObjectsNestedTooDeeply) {
  const NSLogHook hook([](std::string_view) {});
  Ref<NSObject> chain;
  for (int i = 0; i < 64; ++i)
    chain = make<Pair>(chain, nullptr);
  EXPECT_TRUE(NSArchiver::archivedDataWithRootObject(*chain));
  EXPECT_FALSE(NSArchiver::archivedDataWithRootObject(*make<Pair>(chain, nullptr)));
}

TEST(NSCoder, AWriterDoesNotReadNorAReaderWrite) {
  TypedStreamWriter writer;
  EXPECT_FALSE(writer.decodeChar());
  EXPECT_TRUE(writer.failed());
  const size_t size = writer.bytes().size();
  writer.encodeChar(1);
  EXPECT_EQ(writer.bytes().size(), size) << "nothing is written after a failure";

  const auto bytes = archived_color(4, {0.5F, 1});
  TypedStreamReader reader(bytes, [](std::string_view) { return nullptr; });
  reader.encodeChar(1);
  EXPECT_TRUE(reader.failed());
  EXPECT_FALSE(reader.decodeObject());
}

}  // namespace
}  // namespace cocoa
