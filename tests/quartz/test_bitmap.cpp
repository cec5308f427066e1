// SPDX-License-Identifier: MIT
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "canvas.h"
#include "foundation/NSLog.h"

namespace cocoa {
namespace {

struct Log {
  std::vector<std::string> lines;
  NSLogHook hook{[this](std::string_view line) { lines.emplace_back(line); }};
};

TEST(Bitmap, LowerLeftOfUserSpaceIsTheLastRowInMemory) {
  std::array<uint32_t, 6> pixels{};
  CGContextRef c = CGBitmapContextCreateWithScale(pixels.data(), 3, 2, 12, 1);
  ASSERT_NE(c, nullptr);
  CGContextSetRGBFillColor(c, 1, 0.5, 0, 1);
  CGContextFillRect(c, CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(pixels[3] & 0xFFFF00FF, 0xFFFF0000);
  EXPECT_NEAR(static_cast<int>(pixels[3] >> 8 & 0xFF), 128, 1);
  EXPECT_EQ(pixels[0], 0U);
  CGContextRelease(c);
}

TEST(Bitmap, RowsMayBeLongerThanThePixelsNeed) {
  std::array<uint32_t, 10> pixels{};
  CGContextRef c = CGBitmapContextCreateWithScale(pixels.data(), 3, 2, 20, 1);
  CGContextFillRect(c, CGRectMake(0, 0, 10, 10));
  draw_and_release(c, axial(
                          {0, 0}, {0, 2}, [](CGFloat, CGFloat* rgba) { rgba[3] = 1; }, true, true));
  EXPECT_EQ(pixels, (std::array<uint32_t, 10>{0xFF000000, 0xFF000000, 0xFF000000, 0, 0, 0xFF000000,
                                              0xFF000000, 0xFF000000, 0, 0}));
  CGContextRelease(c);
}

TEST(Bitmap, HasMemoryOfItsOwnWithoutAny) {
  const auto picture = [](CGContextRef context) {
    CGContextSetRGBFillColor(context, 1, 0.5, 0, 1);
    CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    const std::string path = testing::TempDir() + "quartz_own_memory.png";
    EXPECT_TRUE(CGBitmapContextWritePNG(context, path.c_str()));
    CGContextRelease(context);
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::filesystem::remove(path);
    return bytes;
  };
  std::array<uint32_t, 16> pixels{};
  EXPECT_EQ(picture(CGBitmapContextCreateWithScale(nullptr, 4, 4, 0, 2)),
            picture(CGBitmapContextCreateWithScale(pixels.data(), 4, 4, 0, 2)));
}

TEST(Bitmap, NumbersThatDoNotFitTogetherAreLogged) {
  Log log;
  uint32_t pixel[4] = {};
  EXPECT_EQ(CGBitmapContextCreateWithScale(pixel, 2, 2, 4, 1), nullptr);
  EXPECT_EQ(CGBitmapContextCreateWithScale(pixel, 1, 2, 6, 1), nullptr);
  EXPECT_EQ(CGBitmapContextCreateWithScale(pixel, 2, 2, 0, 0), nullptr);
  EXPECT_EQ(CGBitmapContextCreateWithScale(pixel, 2, 2, 0, NAN), nullptr);
  EXPECT_EQ(CGBitmapContextCreateWithScale(nullptr, 1U << 20, 2, 0, 1), nullptr);
  EXPECT_EQ(log.lines.size(), 5U);
}

TEST(Bitmap, WritesPictures) {
  const std::string path = testing::TempDir() + "quartz_bitmap.png";
  Canvas canvas(5, 4);
  EXPECT_TRUE(CGBitmapContextWritePNG(canvas.context(), path.c_str()));
  std::ifstream file(path, std::ios::binary);
  std::array<char, 24> head{};
  file.read(head.data(), head.size());
  EXPECT_EQ(std::string(head.data() + 1, 3), "PNG");
  EXPECT_EQ(head[19], 5);
  EXPECT_EQ(head[23], 4);
  std::filesystem::remove(path);
  Log log;
  EXPECT_FALSE(CGBitmapContextWritePNG(canvas.context(), "/nowhere/at/all.png"));
  EXPECT_FALSE(CGBitmapContextWritePNG(nullptr, path.c_str()));
  ASSERT_EQ(log.lines.size(), 2U);
  EXPECT_NE(log.lines.front().find("No such file or directory"), std::string::npos) << log.lines.front();
}

TEST(Bitmap, RemovesNothingThatItCannotWriteTo) {
  const std::filesystem::path link = testing::TempDir() + "quartz_full_device.png";
  std::filesystem::remove(link);
  std::filesystem::create_symlink("/dev/full", link);
  Canvas canvas(5, 4);
  Log log;
  EXPECT_FALSE(CGBitmapContextWritePNG(canvas.context(), link.c_str()));
  ASSERT_EQ(log.lines.size(), 1U);
  EXPECT_NE(log.lines.front().find("No space left on device"), std::string::npos) << log.lines.front();
  EXPECT_TRUE(std::filesystem::remove(link)) << "it is still there";
}

}  // namespace
}  // namespace cocoa
