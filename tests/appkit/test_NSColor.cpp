#include "appkit/NSColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "canvas.h"
#include "foundation/NSArchiver.h"

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
  for (const uint8_t kind : std::vector<uint8_t>{0, 5, 6, 7, 255}) {
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
