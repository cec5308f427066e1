// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "windows/private/x11_resources.h"

namespace cocoa {
namespace {

TEST(X11Resources, TakeTheScaleFromTheDesktopsDpi) {
  EXPECT_EQ(scale_of_resources("Xft.antialias:\t1\nXft.dpi:\t120\nXft.hinting:\t1\n"), 1.25);
  EXPECT_EQ(scale_of_resources("Xft.dpi: 192"), 2);
  EXPECT_DOUBLE_EQ(scale_of_resources("  Xft.dpi  :  134.4\n"), 1.4);
}

TEST(X11Resources, TakeTheLastOfSeveral) {
  EXPECT_EQ(scale_of_resources("Xft.dpi:96\nXft.dpi:144\n"), 1.5);
}

TEST(X11Resources, KeepTheScaleBetweenOneAndThree) {
  EXPECT_EQ(scale_of_resources("Xft.dpi: 72"), 1);
  EXPECT_EQ(scale_of_resources("Xft.dpi: 1200"), 3);
}

TEST(X11Resources, ScaleByOneWithoutADpi) {
  for (const char* resources : {"", "\n", "Xft.dpi", "Xft.dpi:", "Xft.dpi: many", "Xft.dpi: -96",
                                "Xft.dpi: nan", "Xft.dpis: 192", "*Xft.dpi.x: 192", "Xft.dpi 192"})
    EXPECT_EQ(scale_of_resources(resources), 1) << resources;
}

TEST(X11Resources, PutAsManyRowsIntoARequestAsFit) {
  // Without BIG-REQUESTS: 65535 words = 262140 bytes, less 28 of header.
  EXPECT_EQ(rows_a_request(1000, 65535), 65);  // 262112 / 4000 = 65.5
  EXPECT_EQ(rows_a_request(1, 14), 7);         // 56 bytes less 28, 4 bytes a row
  EXPECT_EQ(rows_a_request(1, 1U << 22), 32767);
}

TEST(X11Resources, PutAtLeastOneRowIntoARequest) {
  EXPECT_EQ(rows_a_request(30000, 4096), 1);
  EXPECT_EQ(rows_a_request(0, 0), 1);
}

}  // namespace
}  // namespace cocoa
