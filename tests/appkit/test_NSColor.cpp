// SPDX-License-Identifier: MIT
#include "appkit/NSColor.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "canvas.h"
#include "foundation/NSArchiver.h"
#include "foundation/NSLog.h"

namespace cocoa {
namespace {

// Device RGB (0.0, 0.15, 0.8, 1.0) as other programs write it.
const std::vector<uint8_t> device_rgb_archive = {
    0x04, 0x0B, 0x73, 0x74, 0x72, 0x65, 0x61, 0x6D, 0x74, 0x79, 0x70, 0x65, 0x64, 0x81, 0xE8, 0x03, 0x84,
    0x01, 0x40, 0x84, 0x84, 0x84, 0x07, 0x4E, 0x53, 0x43, 0x6F, 0x6C, 0x6F, 0x72, 0x00, 0x84, 0x84, 0x08,
    0x4E, 0x53, 0x4F, 0x62, 0x6A, 0x65, 0x63, 0x74, 0x00, 0x85, 0x84, 0x01, 0x63, 0x02, 0x84, 0x04, 0x66,
    0x66, 0x66, 0x66, 0x00, 0x83, 0x9A, 0x99, 0x19, 0x3E, 0x83, 0xCD, 0xCC, 0x4C, 0x3F, 0x01, 0x86};

Ref<NSObject> unarchived(const std::vector<uint8_t>& bytes) {
  static const Class* const classes[] = {&NSColor::class_};
  return NSUnarchiver::unarchiveObjectWithData(*make<NSData>(bytes), classes);
}

TEST(NSColor, IsArchivedByteForByteAsOtherProgramsExpect) {
  const auto color = NSColor::colorWithDeviceRed_green_blue_alpha(0, CGFloat(0.15), CGFloat(0.8), 1);
  const auto data = NSArchiver::archivedDataWithRootObject(*color);
  ASSERT_TRUE(data);
  EXPECT_EQ(std::vector<uint8_t>(data->bytes().begin(), data->bytes().end()), device_rgb_archive);
}

TEST(NSColor, ReadsBackEveryKindThatItWrites) {
  const Ref<NSColor> colors[] = {
      NSColor::colorWithDeviceRed_green_blue_alpha(CGFloat(0.25), CGFloat(0.5), 1, 1),
      NSColor::colorWithCalibratedRed_green_blue_alpha(1, 0, CGFloat(0.5), CGFloat(0.75)),
      NSColor::colorWithDeviceWhite_alpha(CGFloat(0.5), 1),
      NSColor::colorWithCalibratedWhite_alpha(1, CGFloat(0.25))};
  for (const Ref<NSColor>& color : colors) {
    const auto data = NSArchiver::archivedDataWithRootObject(*color);
    const auto bytes = std::vector<uint8_t>(data->bytes().begin(), data->bytes().end());
    const Ref<NSObject> read = unarchived(bytes);
    EXPECT_TRUE(color->isEqual(dynamic_cast<NSColor*>(read.get())));
  }
}

TEST(NSColor, DoesNotReadOtherKindsOrComponentsThatAreNotNumbers) {
  constexpr size_t kind_offset = 47;
  constexpr size_t green_offset = 57;
  ASSERT_EQ(device_rgb_archive[kind_offset], 2);
  for (const uint8_t kind : std::vector<uint8_t>{0, 6, 7, 255}) {
    auto bytes = device_rgb_archive;
    bytes[kind_offset] = kind;
    EXPECT_FALSE(unarchived(bytes)) << unsigned{kind};
  }
  auto bytes = device_rgb_archive;
  bytes[kind_offset] = 1;
  EXPECT_TRUE(unarchived(bytes));
  // 0x7FC00000 is a float that is not a number.
  bytes[green_offset - 1] = 0x00;
  bytes[green_offset] = 0x00;
  bytes[green_offset + 1] = 0xC0;
  bytes[green_offset + 2] = 0x7F;
  EXPECT_FALSE(unarchived(bytes));
}

/// An archived colour of inks: cyan, magenta, yellow, black and alpha, as "fffff" in the tagged form.
std::vector<uint8_t> ink_archive(const std::vector<float>& inks) {
  constexpr size_t kind_offset = 47;
  auto bytes = device_rgb_archive;
  bytes[kind_offset] = 5;
  bytes.resize(kind_offset + 1);
  bytes.insert(bytes.end(), {0x84, static_cast<uint8_t>(inks.size())});
  bytes.insert(bytes.end(), inks.size(), 'f');
  for (const float ink : inks) {
    const auto bits = std::bit_cast<uint32_t>(ink);
    bytes.push_back(0x83);
    for (unsigned shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<uint8_t>(bits >> shift));
  }
  bytes.push_back(0x86);
  return bytes;
}

TEST(NSColor, ReadsInksAsTheLightThatTheyLeave) {
  const struct {
    std::vector<float> inks;
    float red, green, blue, alpha;
  } samples[] = {{{0, 0, 0, 0, 1}, 1, 1, 1, 1},
                 {{0, 0, 0, 1, 1}, 0, 0, 0, 1},
                 {{1, 0, 0, 0, 0.5F}, 0, 1, 1, 0.5F},
                 {{0, 1, 1, 0, 1}, 1, 0, 0, 1},
                 {{0.25F, 0.5F, 0.75F, 0.5F, 1}, 0.375F, 0.25F, 0.125F, 1},
                 {{-1, 2, 0.5F, 0, 3}, 1, 0, 0.5F, 1}};
  for (const auto& [inks, red, green, blue, alpha] : samples) {
    const Ref<NSObject> read = unarchived(ink_archive(inks));
    const auto* color = dynamic_cast<NSColor*>(read.get());
    ASSERT_TRUE(color);
    EXPECT_EQ(color->space(), NSColor::Space::device_rgb);
    EXPECT_EQ(color->redComponent(), CGFloat(red));
    EXPECT_EQ(color->greenComponent(), CGFloat(green));
    EXPECT_EQ(color->blueComponent(), CGFloat(blue));
    EXPECT_EQ(color->alphaComponent(), CGFloat(alpha));
  }
}

TEST(NSColor, DoesNotReadInksThatAreNotFiveNumbers) {
  std::vector<std::string> log;
  const NSLogHook hook([&log](std::string_view line) { log.emplace_back(line); });
  EXPECT_FALSE(unarchived(ink_archive({0, 0, 0, 1})));
  EXPECT_FALSE(unarchived(ink_archive({0, 0, 0, 0, 0, 1})));
  EXPECT_FALSE(unarchived(ink_archive({0, 0, 0, std::numeric_limits<float>::infinity(), 1})));
  EXPECT_EQ(log.size(), 3U);
}

TEST(NSColor, BringsComponentsInside) {
  const auto color =
      NSColor::colorWithDeviceRed_green_blue_alpha(-1, 2, std::numeric_limits<CGFloat>::quiet_NaN(), 1);
  EXPECT_EQ(color->redComponent(), 0);
  EXPECT_EQ(color->greenComponent(), 1);
  EXPECT_EQ(color->blueComponent(), 0);
}

TEST(NSColor, OfEqualNumbersInTwoSpacesIsNotEqual) {
  const auto device = NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 1, 1);
  EXPECT_FALSE(NSColor::blueColor()->isEqual(device.get()));
  EXPECT_TRUE(NSColor::blueColor()->colorUsingDeviceRGB()->isEqual(device.get()));
  EXPECT_FALSE(device->isEqual(nullptr));
}

TEST(NSColor, SetColoursFillsOfTheCurrentContext) {
  Canvas canvas(4, 4);
  NSColor::yellowColor()->set();
  CGContextFillRect(canvas.context(), NSMakeRect(0, 0, 2, 4));
  EXPECT_EQ(canvas.at(0, 0), 0xFFFFFF00);
  EXPECT_EQ(canvas.at(3, 0), 0U);
}

}  // namespace
}  // namespace cocoa
